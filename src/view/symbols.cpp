#include "view/symbols.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "view/path_builder.h"

namespace orvane {

namespace {

// In points: the grid is this high beside a font of one point, and a capital that high.
constexpr double heightPerPoint = 1.2;
constexpr double capitalHeightPerPoint = 0.72;
// The middle between those of a capital and of a small letter, below the middle of the line.
constexpr double dropPerPoint = 0.05;

Path dot(Point center, double radius) { return circlePath(center, radius); }

std::vector<Path> binderRings() {
  return {polyline({{7.2, 2}, {7.2, 5.6}}), polyline({{14.8, 2}, {14.8, 5.6}})};
}

SymbolDrawing calendar() {
  SymbolDrawing drawing{0, binderRings(), {}};
  drawing.strokes.push_back(roundedRectPath({2, 4, 18, 17.5}, 3.6));
  drawing.strokes.push_back(polyline({{2, 9.6}, {20, 9.6}}));
  for (const double y : {13.5, 17.3})
    for (const double x : {6.6, 11.0, 15.4}) drawing.fills.push_back(dot({x, y}, 1.25));
  return drawing;
}

// A calendar with its lower right corner left open for a round badge.
SymbolDrawing calendarWithBadge() {
  SymbolDrawing drawing{0, binderRings(), {}};
  drawing.strokes.push_back(PathBuilder()
                                .move({9.8, 21.5})
                                .arc({5.6, 17.9}, 3.6, 90, 180)
                                .arc({5.6, 7.6}, 3.6, 180, 270)
                                .arc({16.4, 7.6}, 3.6, 270, 360)
                                .line({20, 9.1})
                                .build());
  drawing.strokes.push_back(polyline({{2, 9.6}, {16.4, 9.6}}));
  drawing.fills = {dot({6.6, 13.5}, 1.25), dot({6.6, 17.3}, 1.25)};
  drawing.strokes.push_back(circlePath({18.8, 17.2}, 5.6));
  return drawing;
}

SymbolDrawing calendarBadgeClock() {
  SymbolDrawing drawing = calendarWithBadge();
  drawing.strokes.push_back(polyline({{18.8, 14.3}, {18.8, 17.4}, {20.9, 18.6}}));
  return drawing;
}

SymbolDrawing calendarBadgeExclamationmark() {
  SymbolDrawing drawing = calendarWithBadge();
  drawing.strokes.push_back(polyline({{18.8, 14.3}, {18.8, 17.2}}));
  drawing.fills.push_back(dot({18.8, 20.1}, 1.15));
  return drawing;
}

SymbolDrawing checklist() {
  SymbolDrawing drawing;
  for (const double y : {5.0, 12.0})
    drawing.strokes.push_back(polyline({{2, y + 0.6}, {3.9, y + 2.4}, {7.6, y - 2.2}}));
  for (const double y : {5.2, 12.2, 19.2}) drawing.strokes.push_back(polyline({{12, y}, {22, y}}));
  drawing.strokes.push_back(circlePath({4.8, 19.2}, 2.0));
  return drawing;
}

SymbolDrawing checkmarkCircle() {
  return {24, {circlePath({12, 12}, 9.7), polyline({{7.6, 12.6}, {10.8, 15.8}, {16.4, 8.6}})}, {}};
}

// A triangle that points along the circle at `angle`, in the clockwise direction.
Path arrowHead(Point center, double radius, double angle) {
  return PathBuilder()
      .move(pointOnCircle(center, radius + 2.3, angle))
      .line(pointOnCircle(center, radius, angle + 23))
      .line(pointOnCircle(center, radius - 2.3, angle))
      .close()
      .build();
}

SymbolDrawing circlePathOfTwoArrows() {
  const Point center{12, 12};
  constexpr double radius = 8.5;
  SymbolDrawing drawing;
  for (const double turn : {0.0, 180.0}) {
    drawing.strokes.push_back(PathBuilder().arc(center, radius, turn + 190, turn + 318).build());
    // Stroked as well, for round corners like those of the lines.
    drawing.strokes.push_back(arrowHead(center, radius, turn + 320));
    drawing.fills.push_back(arrowHead(center, radius, turn + 320));
  }
  return drawing;
}

SymbolDrawing timer() {
  return {0,
          {circlePath({11, 13.4}, 8.6), polyline({{11, 4.6}, {11, 1.8}}),
           polyline({{8, 1.8}, {14, 1.8}}), polyline({{11, 13.4}, {14.6, 9.6}}),
           polyline({{17.6, 5.6}, {18.8, 6.8}})},
          {dot({11, 13.4}, 1.5)}};
}

SymbolDrawing paintpalette() {
  SymbolDrawing drawing;
  drawing.strokes.push_back(PathBuilder()
                                .move({12, 21.6})
                                .curve({6.6, 21.6}, {2.2, 17.4}, {2.2, 12})
                                .curve({2.2, 6.6}, {6.6, 2.4}, {12.2, 2.4})
                                .curve({17.6, 2.4}, {21.8, 6.2}, {21.8, 10.8})
                                .curve({21.8, 14.2}, {19.4, 16}, {16.6, 16})
                                .curve({14.4, 16}, {13.2, 16.8}, {13.6, 18.6})
                                .curve({14, 20.2}, {13.6, 21.6}, {12, 21.6})
                                .close()
                                .build());
  drawing.fills = {dot({6.8, 12.6}, 1.6), dot({9, 7.6}, 1.6), dot({14.2, 6.8}, 1.6),
                   dot({17.6, 10.8}, 1.6)};
  return drawing;
}

SymbolDrawing questionmarkFolder() {
  SymbolDrawing drawing;
  drawing.strokes.push_back(PathBuilder()
                                .arc({5, 6.4}, 2.8, 180, 270)
                                .line({8.8, 3.6})
                                .curve({10.4, 3.6}, {10.8, 6}, {12.6, 6})
                                .arc({21, 8.8}, 2.8, 270, 360)
                                .arc({21, 17.8}, 2.8, 0, 90)
                                .arc({5, 17.8}, 2.8, 90, 180)
                                .close()
                                .build());
  drawing.strokes.push_back(PathBuilder()
                                .move({10.7, 10.9})
                                .curve({10.7, 9.5}, {11.7, 8.8}, {13, 8.8})
                                .curve({14.4, 8.8}, {15.4, 9.6}, {15.4, 10.9})
                                .curve({15.4, 12.6}, {13, 12.6}, {13, 14.6})
                                .build());
  drawing.fills = {dot({13, 17.6}, 1.25)};
  return drawing;
}

SymbolDrawing display() {
  return {0,
          {roundedRectPath({2, 3, 22, 14.6}, 2.8), polyline({{13, 17.6}, {13, 21.4}}),
           polyline({{8.4, 21.4}, {17.6, 21.4}})},
          {}};
}

struct Entry {
  std::string_view name;
  double width;
  SymbolDrawing (*draw)();
};

constexpr Entry drawings[] = {
    {"arrow.triangle.2.circlepath", 24, circlePathOfTwoArrows},
    {"calendar", 22, calendar},
    {"calendar.badge.clock", 26, calendarBadgeClock},
    {"calendar.badge.exclamationmark", 26, calendarBadgeExclamationmark},
    {"checklist", 24, checklist},
    {"checkmark.circle", 24, checkmarkCircle},
    {"display", 26, display},
    {"paintpalette", 24, paintpalette},
    {"questionmark.folder", 26, questionmarkFolder},
    {"timer", 22, timer},
};

const Entry* find(std::string_view name) {
  const auto* entry = std::ranges::find(drawings, name, &Entry::name);
  return entry == std::end(drawings) ? nullptr : entry;
}

}  // namespace

SymbolDrawing symbolDrawing(const std::string& name) {
  const Entry* entry = find(name);
  SymbolDrawing drawing = entry ? entry->draw() : SymbolDrawing{};
  drawing.width = entry ? entry->width : symbolGridHeight;
  return drawing;
}

double symbolLineWidth(FontWeight weight) {
  switch (weight) {
    case FontWeight::regular:
      return 1.6;
    case FontWeight::semibold:
      return 2.0;
    case FontWeight::bold:
      return 2.3;
  }
  return 1.6;
}

Size symbolSize(const std::string& name, const Font& font) {
  const double height = heightPerPoint * font.size;
  const Entry* entry = find(name);
  return {height * (entry ? entry->width : symbolGridHeight) / symbolGridHeight, height};
}

double symbolBaseline(const Font& font) {
  return (heightPerPoint + capitalHeightPerPoint) / 2 * font.size;
}

double symbolDrop(const Font& font) { return dropPerPoint * font.size; }

}  // namespace orvane
