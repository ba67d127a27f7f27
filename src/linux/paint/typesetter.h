#pragma once

#include <cstddef>
#include <string>

#include "linux/paint/bounded_cache.h"
#include "linux/paint/fonts.h"
#include "linux/paint/handles.h"
#include "view/text_measurer.h"

namespace orvane::host {

// The height of a font's lines, in points. It depends on the font alone: a line with letters or
// pictures from another font is as high as its neighbours.
struct LineMetrics {
  double ascent = 0;
  double descent = 0;
  [[nodiscard]] double height() const { return ascent + descent; }
};

struct FontHash {
  std::size_t operator()(const Font& font) const;
};

// Sets texts in the fonts of the system. The measurer and the painter share one, so that what is
// drawn is as large as what was measured. It remembers a bounded number of measurements. All
// lengths are points. One thread only.
class Typesetter {
 public:
  explicit Typesetter(const FontOptions& options);

  [[nodiscard]] TextExtent measure(const std::string& text, const TextStyle& style, double width);
  // `character` is one character of well-formed UTF-8.
  [[nodiscard]] double advance(const std::string& character, const Font& font);
  [[nodiscard]] double digitAdvance(const Font& font);
  [[nodiscard]] LineMetrics lineMetrics(const Font& font);
  // The text broken into lines. Positions are in points whatever the scale.
  [[nodiscard]] LayoutHandle layout(const std::string& text, const TextStyle& style, double width);

 private:
  struct MeasureKey {
    std::string text;
    TextStyle style;
    double width = 0;
    friend bool operator==(const MeasureKey&, const MeasureKey&) = default;
  };
  struct MeasureHash {
    std::size_t operator()(const MeasureKey& key) const;
  };
  struct AdvanceKey {
    std::string character;
    Font font;
    friend bool operator==(const AdvanceKey&, const AdvanceKey&) = default;
  };
  struct AdvanceHash {
    std::size_t operator()(const AdvanceKey& key) const;
  };

  struct FaceKey {
    FontDesign design = FontDesign::standard;
    FontWeight weight = FontWeight::regular;
    friend bool operator==(const FaceKey&, const FaceKey&) = default;
  };
  struct FaceHash {
    std::size_t operator()(const FaceKey& key) const;
  };

  [[nodiscard]] FontDescriptionHandle describe(const Font& font);
  [[nodiscard]] const PangoFontDescription* face(const Font& font);
  [[nodiscard]] TextExtent extentOf(PangoLayout* layout, const TextStyle& style, double width);

  FontMapHandle map_;
  ContextHandle context_;
  std::string standardFamily_;
  std::string roundedFamily_;
  BoundedCache<FaceKey, FontDescriptionHandle, FaceHash> faces_{32};
  BoundedCache<MeasureKey, TextExtent, MeasureHash> extents_{512};
  BoundedCache<AdvanceKey, double, AdvanceHash> advances_{256};
  BoundedCache<Font, LineMetrics, FontHash> metrics_{64};
};

}  // namespace orvane::host
