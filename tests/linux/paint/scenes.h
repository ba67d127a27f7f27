#pragma once

#include <memory>
#include <string>

#include "linux/paint/painter.h"
#include "linux/paint/png.h"
#include "linux/paint/text_measurer.h"
#include "view/display_list.h"

namespace orvane::testing_pictures {

// A painter and a measurer whose pictures depend neither on the desktop's fonts nor on its taste.
struct Studio {
  std::shared_ptr<host::Typesetter> typesetter;
  std::unique_ptr<TextMeasurer> measurer;
  std::unique_ptr<Painter> painter;

  Studio();
  // The whole list on a clear picture of this many points.
  [[nodiscard]] host::Picture picture(const DisplayList& list, Size size, double scale);
};

[[nodiscard]] DisplayItem item(Rect frame, decltype(DisplayItem::content) content);
// A text in the frame that it takes without a limit.
[[nodiscard]] DisplayItem textAt(const Studio& studio, Point origin, const std::string& text,
                                 const TextStyle& style, Color color);
// The same with each character in a cell of its own.
[[nodiscard]] DisplayItem cellsAt(const Studio& studio, Point origin, const std::string& text,
                                  const Font& font, Color color);

inline constexpr Size cardSceneSize{300, 190};
enum class Theme { dark, light };
// A card of glass with everything on it that a display list can hold.
[[nodiscard]] DisplayList cardScene(const Studio& studio, Theme theme,
                                    const std::string& countdown);

inline constexpr Size symbolSceneSize{310, 70};
// All symbols, in two sizes and weights.
[[nodiscard]] DisplayList symbolScene();

}  // namespace orvane::testing_pictures
