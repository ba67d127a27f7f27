#pragma once

#include <limits>
#include <string>

#include "view/font.h"
#include "view/geometry.h"

namespace orvane {

// How a text is set, apart from its colour.
struct TextStyle {
  Font font;
  bool uppercase = false;  // shown in upper case; the string itself stays as it is
  int lineLimit = 0;       // 0: as many lines as it takes

  friend bool operator==(const TextStyle&, const TextStyle&) = default;
};

inline constexpr double unlimitedWidth = std::numeric_limits<double>::infinity();

// The space that a text takes when it is wrapped at a width and cut after its line limit.
struct TextExtent {
  Size size;                 // never wider than the width asked for
  double firstBaseline = 0;  // below the top
  double lastBaseline = 0;
  bool truncated = false;  // the line limit cut something off
};

// Knows the fonts. Texts are UTF-8 in any script; ill-formed bytes count as U+FFFD, and line
// breaks and control characters within a text count as spaces. Main thread only.
class TextMeasurer {
 public:
  virtual ~TextMeasurer() = default;

  [[nodiscard]] virtual TextExtent measure(const std::string& text, const TextStyle& style,
                                           double width) const = 0;
  // The advance of every digit of the font (the widest, where digits differ) and of a colon, for
  // texts that are laid out as cells of equal width.
  [[nodiscard]] virtual double digitAdvance(const Font& font) const = 0;
  [[nodiscard]] virtual double advance(char character, const Font& font) const = 0;
};

}  // namespace orvane
