#include "scenes.h"

#include <cmath>
#include <utility>

#include "view/symbols.h"

namespace orvane::testing_pictures {

namespace {

constexpr const char* symbols[] = {"timer",
                                   "calendar",
                                   "checklist",
                                   "arrow.triangle.2.circlepath",
                                   "calendar.badge.clock",
                                   "paintpalette",
                                   "questionmark.folder",
                                   "calendar.badge.exclamationmark",
                                   "checkmark.circle",
                                   "display"};

void add(DisplayList& list, Rect frame, decltype(DisplayItem::content) content) {
  list.push_back(item(frame, std::move(content)));
}

// As a card's surface is made: clipped tint and gradient as one picture, border, shadow.
void addGlass(DisplayList& list, Rect frame, Theme theme, Color neutral) {
  const Shape panel = Shape::roundedRectangle(8, true);
  const LinearGradient gradient =
      theme == Theme::dark
          ? LinearGradient{{Color::srgb(0.24, 0.36, 0.95, 0.28), Color::black().opacity(0.18),
                            Color::white().opacity(0.06)}}
          : LinearGradient{{Color::white().opacity(0.78), Color::srgb(0.24, 0.36, 0.95, 0.13),
                            Color::white().opacity(0.52)}};
  add(list, frame, ShadowItem{panel, Color::black().opacity(0.18), 22, {0, 12}});
  add(list, frame, GroupBegin{0.85, panel});
  add(list, frame, FillItem{Shape::rectangle(), Material{Color::srgb(0.5, 0.5, 0.55, 0.4)}});
  add(list, frame, FillItem{Shape::rectangle(), gradient});
  add(list, frame, GroupEnd{});
  add(list, frame, StrokeItem{panel, 1, neutral.opacity(0.18)});
}

}  // namespace

Studio::Studio()
    : typesetter(host::makeTypesetter(
          {"DejaVu Sans", "DejaVu Sans", "en", host::FontOptions::Rendering::fixed})),
      measurer(host::makeTextMeasurer(typesetter)),
      painter(host::makePainter(typesetter)) {}

host::Picture Studio::picture(const DisplayList& list, Size size, double scale) {
  host::Picture picture(static_cast<int>(std::ceil(size.width * scale)),
                        static_cast<int>(std::ceil(size.height * scale)));
  painter->paint(list, {picture.buffer(), scale, {}, nullptr},
                 {{0, 0, picture.width, picture.height}});
  return picture;
}

DisplayItem item(Rect frame, decltype(DisplayItem::content) content) {
  return {frame, 1, std::move(content)};
}

DisplayItem textAt(const Studio& studio, Point origin, const std::string& text,
                   const TextStyle& style, Color color) {
  const TextExtent extent = studio.measurer->measure(text, style, unlimitedWidth);
  return item({origin.x, origin.y, extent.size.width, extent.size.height},
              TextItem{text, style, color, extent.firstBaseline, {}});
}

DisplayItem cellsAt(const Studio& studio, Point origin, const std::string& text, const Font& font,
                    Color color) {
  DisplayItem cells = textAt(studio, origin, text, {font}, color);
  auto& content = std::get<TextItem>(cells.content);
  cells.frame.width = 0;
  for (const char character : text) {
    const bool isDigit = character >= '0' && character <= '9';
    content.cells.push_back(isDigit ? studio.measurer->digitAdvance(font)
                                    : studio.measurer->advance(character, font));
    cells.frame.width += content.cells.back();
  }
  return cells;
}

DisplayList cardScene(const Studio& studio, Theme theme, const std::string& countdown) {
  const Color neutral = theme == Theme::dark ? Color::white() : Color::srgb(0.08, 0.10, 0.16);
  const Font digits{44, FontWeight::bold, FontDesign::rounded, true};
  DisplayList list;
  addGlass(list, {25, 15, 250, 140}, theme, neutral);
  list.push_back(textAt(studio, {41, 30.3}, "Next Up", {{13, FontWeight::bold}, true, 1},
                        neutral.opacity(0.6)));
  add(list, {190, 27.5, 69, 23.3}, FillItem{Shape::capsule(), neutral.opacity(0.12)});
  add(list, {199, 32.4, 13.2, 13.2},
      SymbolItem{"calendar", {11, FontWeight::bold}, neutral.opacity(0.82)});
  list.push_back(cellsAt(studio, {41, 49.7}, countdown, digits, Color::orange()));
  list.push_back(
      textAt(studio, {41, 107.4}, "Déjeuner à l’été", {{15, FontWeight::semibold}}, neutral));
  add(list, {41, 131, 15, 15}, StrokeItem{Shape::circle(), 2.2, Color::red().opacity(0.9)});
  add(list, {64, 127, 2, 22}, FillItem{Shape::roundedRectangle(1), Color::cyan().opacity(0.55)});
  return list;
}

DisplayList symbolScene() {
  DisplayList list;
  const Color ink = Color::srgb(0.35, 0.45, 0.8);
  double x = 4;
  for (const char* name : symbols) {
    const Font small{12, FontWeight::semibold};
    const Font large{22, FontWeight::regular};
    const Size smallSize = symbolSize(name, small);
    const Size largeSize = symbolSize(name, large);
    add(list, {x, 6, smallSize.width, smallSize.height}, SymbolItem{name, small, ink});
    add(list, {x, 32, largeSize.width, largeSize.height}, SymbolItem{name, large, ink});
    x += 30.5;
  }
  return list;
}

}  // namespace orvane::testing_pictures
