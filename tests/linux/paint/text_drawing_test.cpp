#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "scenes.h"
#include "view/symbols.h"

namespace orvane::testing_pictures {
namespace {

struct Ink {
  int left = 1 << 20;
  int top = 1 << 20;
  int right = -1;
  int bottom = -1;
};

Ink inkOf(const host::Picture& picture) {
  Ink ink;
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width; ++x)
      if (picture.pixels[static_cast<std::size_t>(y * picture.width + x)] >> 24 > 60) {
        ink.left = std::min(ink.left, x);
        ink.right = std::max(ink.right, x);
        ink.top = std::min(ink.top, y);
        ink.bottom = std::max(ink.bottom, y);
      }
  return ink;
}

TEST(TextDrawing, StandsOnItsBaseline) {
  Studio studio;
  for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
    const DisplayItem text = textAt(studio, {10, 10}, "HEXI", {{20}}, Color::black());
    const double baseline = text.frame.y + std::get<TextItem>(text.content).firstBaseline;
    const Ink ink = inkOf(studio.picture({text}, {120, 60}, scale));
    EXPECT_EQ(ink.bottom + 1, std::lround(baseline * scale)) << scale;
    EXPECT_GE(ink.left, 10 * scale);
    EXPECT_LE(ink.right, text.frame.right() * scale);
  }
}

TEST(TextDrawing, DrawsAsManyLinesAsWereMeasured) {
  Studio studio;
  const TextStyle style{{15}, false, 2};
  const std::string title = "A title that goes on for longer than there is any room for it";
  const TextExtent extent = studio.measurer->measure(title, style, 120);
  const DisplayItem text = item({4, 4, extent.size.width, extent.size.height},
                                TextItem{title, style, Color::black(), extent.firstBaseline, {}});
  const Ink ink = inkOf(studio.picture({text}, {140, 60}, 1));
  EXPECT_TRUE(extent.truncated);
  EXPECT_GT(ink.bottom, 4 + extent.lastBaseline - 3);
  EXPECT_LE(ink.bottom, 4 + extent.size.height);
  EXPECT_LE(ink.right, 4 + extent.size.width);
}

TEST(TextDrawing, RightToLeftTextLiesAtItsOwnStart) {
  Studio studio;
  TextItem content{"שלום", {{16}}, Color::black(), 16, {}};
  const Ink hebrew = inkOf(studio.picture({item({0, 0, 200, 24}, content)}, {200, 30}, 1));
  EXPECT_GT(hebrew.left, 120);
  EXPECT_GT(hebrew.right, 192);
  content.text = "Hello";
  const Ink latin = inkOf(studio.picture({item({0, 0, 200, 24}, content)}, {200, 30}, 1));
  EXPECT_LT(latin.right, 80);
}

TEST(TextDrawing, EmojiBringTheirOwnColours) {
  Studio studio;
  const auto picture =
      studio.picture({textAt(studio, {2, 2}, "🎉", {{32}}, Color::black())}, {60, 50}, 1);
  int coloured = 0;
  for (const std::uint32_t p : picture.pixels) {
    const int red = static_cast<int>(p >> 16 & 0xFF);
    const int blue = static_cast<int>(p & 0xFF);
    coloured += std::abs(red - blue) > 60;
  }
  EXPECT_GT(coloured, 50);
}

TEST(TextDrawing, EmojiTakeTheOpacityOfTheText) {
  Studio studio;
  const auto picture = studio.picture(
      {textAt(studio, {2, 2}, "🎉", {{32}}, Color::black().opacity(0.5))}, {60, 50}, 1);
  std::uint32_t most = 0;
  for (const std::uint32_t p : picture.pixels) most = std::max(most, p >> 24);
  EXPECT_GT(most, 100U);
  EXPECT_LE(most, 129U);
}

TEST(TextDrawing, AnyScriptLeavesInk) {
  Studio studio;
  for (const std::string text : {"会議", "회의", "اجتماع", "פגישה", "ไทย", "हिन्दी", "∑∫", "\xFF",
                                 "👩‍👩‍👧‍👦"}) {
    const auto picture =
        studio.picture({textAt(studio, {4, 4}, text, {{20}}, Color::black())}, {120, 60}, 1);
    EXPECT_GT(inkOf(picture).right, 0) << text;
  }
}

TEST(TextDrawing, EqualDigitsLookAlikeInEveryCell) {
  Studio studio;
  const Font font{44, FontWeight::bold, FontDesign::rounded, true};
  for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
    const DisplayItem cells = cellsAt(studio, {3.3, 4.7}, "888", font, Color::white());
    const double advance = std::get<TextItem>(cells.content).cells[0];
    const auto picture = studio.picture({cells}, {110, 60}, scale);
    const auto column = [&](int cell, int x, int y) {
      const int start = static_cast<int>(std::floor((3.3 + cell * advance) * scale + 0.5));
      return picture.pixels[static_cast<std::size_t>(y * picture.width + start + x)];
    };
    const int width = static_cast<int>(advance * scale);
    for (int y = 0; y < picture.height; ++y)
      for (int x = 1; x < width; ++x) {
        ASSERT_EQ(column(0, x, y), column(1, x, y)) << x << " " << y << " at " << scale;
        ASSERT_EQ(column(0, x, y), column(2, x, y)) << x << " " << y << " at " << scale;
      }
  }
}

TEST(TextDrawing, CellsAndPlainTextShowTheSameDigitsInTheSamePlace) {
  Studio studio;
  const Font font{44, FontWeight::bold, FontDesign::standard, true};
  const Ink cells =
      inkOf(studio.picture({cellsAt(studio, {4, 4}, "01:23", font, Color::white())}, {180, 60}, 1));
  const Ink plain = inkOf(
      studio.picture({textAt(studio, {4, 4}, "01:23", {font}, Color::white())}, {180, 60}, 1));
  EXPECT_NEAR(cells.left, plain.left, 1);
  EXPECT_NEAR(cells.right, plain.right, 1);
  EXPECT_EQ(cells.top, plain.top);
  EXPECT_EQ(cells.bottom, plain.bottom);
}

TEST(TextDrawing, CellsMayBeFewerOrMoreThanCharacters) {
  Studio studio;
  for (const std::vector<double>& cells :
       {std::vector<double>{20.0}, std::vector<double>(9, 20.0)}) {
    const DisplayItem text =
        item({2, 2, 60, 40}, TextItem{"12", {{30}}, Color::white(), 30, cells});
    EXPECT_GT(inkOf(studio.picture({text}, {240, 50}, 1)).right, 0);
  }
}

TEST(TextDrawing, UppercaseIsDrawnAndTheStringIsNot) {
  Studio studio;
  const auto upper = studio.picture(
      {textAt(studio, {2, 2}, "Next Up", {{13}, true, 1}, Color::black())}, {90, 24}, 1);
  const auto spelled = studio.picture(
      {textAt(studio, {2, 2}, "NEXT UP", {{13}, false, 1}, Color::black())}, {90, 24}, 1);
  EXPECT_EQ(upper.pixels, spelled.pixels);
}

// The row around which the ink lies, in pixels.
double middleOf(const host::Picture& picture) {
  double sum = 0;
  double weights = 0;
  for (std::size_t index = 0; index < picture.pixels.size(); ++index) {
    const double weight = picture.pixels[index] >> 24;
    const auto row = static_cast<double>(index / static_cast<std::size_t>(picture.width));
    sum += weight * (row + 0.5);
    weights += weight;
  }
  return sum / weights;
}

TEST(TextDrawing, ASymbolStandsALittleBelowTheMiddleOfItsFrame) {
  Studio studio;
  const Font font{12, FontWeight::semibold};
  const Size size = symbolSize("checkmark.circle", font);
  for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
    for (double y = 10; y < 11; y += 0.125) {
      const DisplayItem symbol = item({10, y, size.width, size.height},
                                      SymbolItem{"checkmark.circle", font, Color::black()});
      const double middle = middleOf(studio.picture({symbol}, {60, 60}, scale)) / scale;
      EXPECT_NEAR(middle, y + size.height / 2 + symbolDrop(font), 0.25 / scale)
          << scale << " " << y;
    }
  }
}

}  // namespace
}  // namespace orvane::testing_pictures
