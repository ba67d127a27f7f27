#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <variant>

#include "foundation/color.h"
#include "view/geometry.h"

namespace orvane {

// Outlines that fill the rectangle they are given.
struct Shape {
  enum class Kind : std::uint8_t { rectangle, roundedRectangle, capsule, circle };
  Kind kind = Kind::rectangle;
  double cornerRadius = 0;  // of a rounded rectangle, in points
  bool continuous = false;  // corners whose curvature grows gradually, rather than circle arcs

  static constexpr Shape rectangle() { return {}; }
  static constexpr Shape roundedRectangle(double radius, bool continuous = false) {
    return {Kind::roundedRectangle, radius, continuous};
  }
  static constexpr Shape capsule() { return {Kind::capsule, 0, false}; }
  static constexpr Shape circle() { return {Kind::circle, 0, false}; }

  friend bool operator==(const Shape&, const Shape&) = default;
};

// The radius of the corners of a shape that fills `size`, both in a unit of which a point has
// `scale`.
[[nodiscard]] constexpr double cornerRadiusIn(const Shape& shape, Size size, double scale) {
  const double most = std::max(std::min(size.width, size.height) / 2, 0.0);
  switch (shape.kind) {
    case Shape::Kind::rectangle:
      return 0;
    case Shape::Kind::roundedRectangle:
      return std::clamp(shape.cornerRadius * scale, 0.0, most);
    case Shape::Kind::capsule:
    case Shape::Kind::circle:
      return most;
  }
  return 0;
}

// From the top-leading to the bottom-trailing corner, the stops evenly spaced.
struct LinearGradient {
  std::array<Color, 3> stops;
  friend bool operator==(const LinearGradient&, const LinearGradient&) = default;
};

// The stand-in for a blurred view of what lies behind: a translucent tint.
struct Material {
  Color tint;
  friend bool operator==(const Material&, const Material&) = default;
};

using Fill = std::variant<Color, LinearGradient, Material>;

}  // namespace orvane
