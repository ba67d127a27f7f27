#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "view/text_measurer.h"

namespace orvane::fakes {

// A font in which every character is half as wide as the font's size, tabular digits are 0.6 times
// as wide, and lines are 1.2 times as high with the baseline at 0.9. Lines break at single spaces,
// and a word that is wider than the line goes on in the next one.
class CellMeasurer : public TextMeasurer {
 public:
  [[nodiscard]] TextExtent measure(const std::string& text, const TextStyle& style,
                                   double width) const override {
    ++measured_;
    std::vector<double> lines = wrapped(text, style.font, width);
    const auto limit = static_cast<std::size_t>(style.lineLimit);
    const bool truncated =
        limit > 0 && (lines.size() > limit || (lines.size() == limit && lines.back() > width));
    if (truncated) {
      lines.resize(limit);
      lines.back() = width;  // whatever was cut, the ellipsis takes the line's end
    }
    const double line = 1.2 * style.font.size;
    const double height = line * static_cast<double>(lines.size());
    const double widest = std::min(*std::max_element(lines.begin(), lines.end()), width);
    return {{widest, height}, 0.75 * line, height - 0.25 * line, truncated};
  }
  [[nodiscard]] double digitAdvance(const Font& font) const override { return 0.6 * font.size; }
  [[nodiscard]] double advance(char character, const Font& font) const override {
    return isDigit(character) ? digitAdvance(font) : 0.5 * font.size;
  }

  // How often a text was measured so far.
  [[nodiscard]] int measured() const { return measured_; }

 private:
  static bool isDigit(char character) { return character >= '0' && character <= '9'; }

  // UTF-8: one character for each byte that does not continue another.
  static double widthOf(char byte, const Font& font) {
    if ((static_cast<unsigned char>(byte) & 0xC0U) == 0x80U) return 0;
    return (isDigit(byte) && font.monospacedDigits ? 0.6 : 0.5) * font.size;
  }

  static std::vector<double> wrapped(const std::string& text, const Font& font, double width) {
    constexpr double tolerance = 1e-6;
    std::vector<double> lines{0};
    double word = 0;
    double gap = 0;
    const auto endWord = [&] {
      if (lines.back() > 0 && lines.back() + gap + word > width + tolerance) {
        lines.push_back(0);
        gap = 0;
      }
      lines.back() += gap + word;
      word = 0;
    };
    for (const char byte : text) {
      const double advance = widthOf(byte, font);
      if (byte == ' ') {
        endWord();
        gap = advance;
      } else if (word > 0 && word + advance > width + tolerance) {
        endWord();
        lines.push_back(0);
        gap = 0;
        word = advance;
      } else {
        word += advance;
      }
    }
    endWord();
    return lines;
  }

  mutable int measured_ = 0;
};

}  // namespace orvane::fakes
