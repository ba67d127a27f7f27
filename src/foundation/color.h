#pragma once

#include <cstdint>

namespace orvane {

// Colours that carry a meaning rather than components; whoever paints resolves them.
enum class SystemColor : std::uint8_t { red, orange, yellow, cyan, white, black };

// Components of a colour in the sRGB space, each in 0…1, not premultiplied.
struct SRGB {
  double red = 0;
  double green = 0;
  double blue = 0;
  double opacity = 1;

  friend bool operator==(const SRGB&, const SRGB&) = default;
};

// Either a named system colour or sRGB components, with an opacity in 0…1. Comparison is by
// description: system white and sRGB (1, 1, 1) look alike but are not equal.
class Color {
 public:
  constexpr Color() = default;  // clear

  static constexpr Color srgb(double red, double green, double blue, double opacity = 1) {
    Color color;
    color.components_ = {red, green, blue, opacity};
    return color;
  }
  static constexpr Color system(SystemColor name, double opacity = 1) {
    Color color;
    color.isSystem_ = true;
    color.name_ = name;
    color.components_ = {0, 0, 0, opacity};
    return color;
  }
  static constexpr Color red() { return system(SystemColor::red); }
  static constexpr Color orange() { return system(SystemColor::orange); }
  static constexpr Color yellow() { return system(SystemColor::yellow); }
  static constexpr Color cyan() { return system(SystemColor::cyan); }
  static constexpr Color white() { return system(SystemColor::white); }
  static constexpr Color black() { return system(SystemColor::black); }
  static constexpr Color clear() { return srgb(0, 0, 0, 0); }

  // The same colour at its own opacity times `factor`.
  [[nodiscard]] constexpr Color opacity(double factor) const {
    Color color = *this;
    color.components_.opacity *= factor;
    return color;
  }
  [[nodiscard]] constexpr double opacity() const { return components_.opacity; }
  [[nodiscard]] constexpr bool isSystem() const { return isSystem_; }
  // Meaningful only where isSystem().
  [[nodiscard]] constexpr SystemColor systemName() const { return name_; }
  // The components as drawn; system colours are looked up in the fixed palette of the board.
  [[nodiscard]] SRGB resolved() const;

  friend bool operator==(const Color&, const Color&) = default;

 private:
  bool isSystem_ = false;
  SystemColor name_ = SystemColor::black;
  SRGB components_{0, 0, 0, 0};
};

}  // namespace orvane
