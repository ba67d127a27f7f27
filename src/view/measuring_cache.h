#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>

#include "view/text_measurer.h"

namespace orvane {

// Asks another measurer once for each text, style and width, and remembers the answers. Holds at
// most so many answers of each kind, and begins anew where there would be more: what is on screen
// is asked for again at once, what no longer is goes. Main thread only.
class MeasuringCache final : public TextMeasurer {
 public:
  explicit MeasuringCache(const TextMeasurer& measurer, std::size_t capacity = 2048)
      : measurer_(measurer), capacity_(capacity) {}

  [[nodiscard]] TextExtent measure(const std::string& text, const TextStyle& style,
                                   double width) const override;
  [[nodiscard]] double digitAdvance(const Font& font) const override;
  [[nodiscard]] double advance(char character, const Font& font) const override;

 private:
  struct ExtentKey {
    std::string text;
    TextStyle style;
    double width;
    friend bool operator==(const ExtentKey&, const ExtentKey&) = default;
  };
  struct AdvanceKey {
    char character;  // NUL for any digit
    Font font;
    friend bool operator==(const AdvanceKey&, const AdvanceKey&) = default;
  };
  struct Hash {
    std::size_t operator()(const ExtentKey& key) const;
    std::size_t operator()(const AdvanceKey& key) const;
  };

  const TextMeasurer& measurer_;
  std::size_t capacity_;
  mutable std::unordered_map<ExtentKey, TextExtent, Hash> extents_;
  mutable std::unordered_map<AdvanceKey, double, Hash> advances_;
};

}  // namespace orvane
