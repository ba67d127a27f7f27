#include "view/symbols.h"

#include <gtest/gtest.h>

#include "view/display_list.h"

namespace orvane {
namespace {

const std::string names[] = {"timer",
                             "calendar",
                             "checklist",
                             "arrow.triangle.2.circlepath",
                             "calendar.badge.clock",
                             "paintpalette",
                             "questionmark.folder",
                             "calendar.badge.exclamationmark",
                             "checkmark.circle",
                             "display"};

// End points alone: control points may lie outside of what they bend.
void expectInside(const Path& path, double width, double margin, const std::string& name) {
  for (const PathCommand& command : path) {
    if (command.verb == PathCommand::Verb::close) continue;
    const Point end = command.points[command.verb == PathCommand::Verb::curve ? 2 : 0];
    EXPECT_GE(end.x, margin) << name;
    EXPECT_GE(end.y, margin) << name;
    EXPECT_LE(end.x, width - margin) << name;
    EXPECT_LE(end.y, symbolGridHeight - margin) << name;
  }
}

TEST(Symbols, EveryOneHasInkThatStaysInItsGrid) {
  for (const std::string& name : names) {
    const SymbolDrawing drawing = symbolDrawing(name);
    EXPECT_FALSE(drawing.strokes.empty()) << name;
    const double halfLine = symbolLineWidth(FontWeight::bold) / 2;
    for (const Path& path : drawing.strokes) expectInside(path, drawing.width, halfLine, name);
    for (const Path& path : drawing.fills) expectInside(path, drawing.width, 0, name);
  }
}

TEST(Symbols, AnUnknownNameHasTheNominalSizeAndNoInk) {
  const SymbolDrawing drawing = symbolDrawing("nobody.knows");
  EXPECT_TRUE(drawing.strokes.empty());
  EXPECT_TRUE(drawing.fills.empty());
  EXPECT_EQ(symbolSize("nobody.knows", {10}), (Size{12, 12}));
}

TEST(Symbols, SizesGrowWithTheFontAndKeepTheDrawingsShape) {
  for (const std::string& name : names) {
    const Size size = symbolSize(name, {20, FontWeight::bold});
    EXPECT_EQ(size.height, 24) << name;
    EXPECT_EQ(size.width, symbolDrawing(name).width) << name;
    EXPECT_EQ(symbolSize(name, {10}).width, size.width / 2) << name;
  }
}

TEST(Symbols, LinesGrowWithTheWeight) {
  EXPECT_LT(symbolLineWidth(FontWeight::regular), symbolLineWidth(FontWeight::semibold));
  EXPECT_LT(symbolLineWidth(FontWeight::semibold), symbolLineWidth(FontWeight::bold));
}

TEST(Symbols, TheBaselineLiesWithinTheSymbol) {
  EXPECT_GT(symbolBaseline({10}), 6);
  EXPECT_LT(symbolBaseline({10}), 12);
}

TEST(Symbols, TheDropGrowsWithTheFontAndIsPartOfWhatIsDrawn) {
  EXPECT_EQ(symbolDrop({40}), 2 * symbolDrop({20}));
  const DisplayItem symbol{{10, 10, 24, 24}, 1, SymbolItem{"display", {20}, Color::white()}};
  EXPECT_EQ(symbol.bounds(), (Rect{10, 10, 24, 24 + symbolDrop({20})}));
}

}  // namespace
}  // namespace orvane
