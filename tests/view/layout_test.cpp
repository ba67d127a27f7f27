#include "view/layout.h"

#include <gtest/gtest.h>

#include "fakes/cell_measurer.h"

namespace orvane {
namespace {

std::string dump(const View& view, Size size) {
  return describe(layout(view, size, fakes::CellMeasurer()).list);
}

// A text of so many letters, each 5 points wide and the line 12 high.
View letters(int count) {
  return text(std::string(static_cast<std::size_t>(count), 'x')).font({10});
}

View box(double width, double height) {
  return filled(Shape::rectangle(), Color::red()).frame(width, height);
}

TEST(Layout, DumpsACard) {
  const View card =
      vstack({HorizontalAlignment::leading, 6},
             {text("Title").font({15, FontWeight::semibold}).lineLimit(2),
              hstack({}, {symbol("calendar"), spacer(), text("2d 5h")})})
          .padding(20)
          .background(filled(Shape::roundedRectangle(8, true), Color::white().opacity(0.5)));
  EXPECT_EQ(dump(card, {200, 100}),
            "fill (0.0 10.2 200.0 79.6) continuous 8, white at 0.5\n"
            "text (20.0 30.2 37.5 18.0) \"Title\" 15 semibold, white, lines 2\n"
            "symbol (20.0 54.2 14.3 15.6) calendar 13, white\n"
            "text (147.5 54.2 32.5 15.6) \"2d 5h\" 13, white\n");
}

TEST(Layout, AStackWithoutSpacingUsesTheDefault) {
  EXPECT_EQ(dump(hstack({}, {box(10, 10), box(10, 10)}), {28, 10}),
            "fill (0.0 0.0 10.0 10.0) rectangle, red\n"
            "fill (18.0 0.0 10.0 10.0) rectangle, red\n");
}

TEST(Layout, EmptyViewsTakeNoSpacing) {
  EXPECT_EQ(dump(vstack({}, {box(10, 10), View(), box(10, 10)}), {10, 28}),
            dump(vstack({}, {box(10, 10), box(10, 10)}), {10, 28}));
}

// Title, spacer and pill, at every width that leaves the pill its half: it never gives way, and
// the title gets the rest.
TEST(Layout, ARowAtEveryWidth) {
  const View row = hstack({VerticalAlignment::top, 8}, {letters(8), spacer(), letters(3)});
  for (int width = 46; width <= 100; ++width) {
    const auto list = layout(row, {static_cast<double>(width), 20}, fakes::CellMeasurer()).list;
    ASSERT_EQ(list.size(), 2U);
    const double title = list[0].frame.width;
    EXPECT_NEAR(list[1].frame.width, 15, 0.01) << width;
    EXPECT_NEAR(list[1].frame.right(), width, 0.01) << width;
    EXPECT_GE(list[1].frame.x - list[0].frame.right(), 16 - 0.01) << width;
    if (width >= 40 + 15 + 16) {
      EXPECT_NEAR(title, 40, 0.01) << width;
    } else {
      // As many letters as fit beside the pill stand on the first line.
      EXPECT_NEAR(title, 5 * ((width - 31) / 5), 0.01) << width;
    }
  }
}

TEST(Layout, FixedFramesDoNotShrinkAndStickOutAtTheEnd) {
  const View row = hstack({VerticalAlignment::top, 16}, {box(315, 10), box(360, 10)});
  const View board = row.frame(View::FlexibleFrame{.maxWidth = unlimitedWidth,
                                                   .maxHeight = unlimitedWidth,
                                                   .alignment = Alignment::topLeading()})
                         .frame(400, 100, Alignment::topLeading());
  EXPECT_EQ(dump(board, {400, 100}),
            "fill (0.0 0.0 315.0 10.0) rectangle, red\n"
            "fill (331.0 0.0 360.0 10.0) rectangle, red\n");
}

TEST(Layout, AColumnThatIsTooHighKeepsItsLines) {
  const View column = vstack({HorizontalAlignment::leading, 0}, {letters(8), letters(8)})
                          .frame(20, 10, Alignment::topLeading());
  EXPECT_EQ(dump(column, {20, 10}),
            "text (0.0 0.0 20.0 24.0) \"xxxxxxxx\" 10, white\n"
            "text (0.0 24.0 20.0 24.0) \"xxxxxxxx\" 10, white\n");
}

TEST(Layout, FirstBaselinesMeet) {
  const View row = hstack({VerticalAlignment::firstTextBaseline, 0},
                          {text("a").font({20}), text("b").font({10}), box(5, 8)});
  EXPECT_EQ(dump(row, {20, 24}),
            "text (0.0 0.0 10.0 24.0) \"a\" 20, white\n"
            "text (10.0 9.0 5.0 12.0) \"b\" 10, white\n"
            "fill (15.0 10.0 5.0 8.0) rectangle, red\n");
}

TEST(Layout, TheBaselineOfAPaddedTextIsThatOfTheText) {
  const View pill = text("b").font({10}).padding({4, 8, 4, 8});
  const View row = hstack({VerticalAlignment::firstTextBaseline, 0}, {text("a").font({20}), pill});
  EXPECT_EQ(dump(row, {43, 25}),
            "text (6.0 0.0 10.0 24.0) \"a\" 20, white\n"
            "text (24.0 9.0 5.0 12.0) \"b\" 10, white\n");
}

TEST(Layout, ZStackIsAsLargeAsItsLargestChild) {
  EXPECT_EQ(dump(zstack(Alignment::topLeading(), {box(10, 30), box(20, 10)}), {20, 30}),
            "fill (0.0 0.0 10.0 30.0) rectangle, red\n"
            "fill (0.0 0.0 20.0 10.0) rectangle, red\n");
}

TEST(Layout, BackgroundAndOverlayTakeTheViewsSize) {
  const View view = letters(4)
                        .background(filled(Shape::capsule(), Color::black()))
                        .overlay(stroked(Shape::capsule(), Color::white(), 1));
  EXPECT_EQ(dump(view, {100, 100}),
            "fill (40.0 44.0 20.0 12.0) capsule, black\n"
            "text (40.0 44.0 20.0 12.0) \"xxxx\" 10, white\n"
            "stroke (40.0 44.0 20.0 12.0) capsule 1, white\n");
}

TEST(Layout, FlexibleFramesRespectTheirBounds) {
  const auto widthOf = [](View::FlexibleFrame frame, double offered) {
    const View view = letters(4).frame(frame).named("frame");
    return layout(view, {offered, 50}, fakes::CellMeasurer()).frames.at(0).frame.width;
  };
  EXPECT_EQ(widthOf({.minWidth = 32}, 100), 32);
  EXPECT_EQ(widthOf({.minWidth = 12}, 100), 20);
  EXPECT_EQ(widthOf({.maxWidth = unlimitedWidth}, 100), 100);
  EXPECT_EQ(widthOf({.maxWidth = 60}, 100), 60);
  EXPECT_EQ(widthOf({.maxWidth = 60}, 40), 40);
}

TEST(Layout, OpacityIsOneGroupAndMultiplies) {
  const View inner = vstack({HorizontalAlignment::center, 0}, {letters(2).opacity(0.5)});
  EXPECT_EQ(dump(inner.opacity(0.5), {10, 12}),
            "group (0.0 0.0 10.0 12.0) at 0.5\n"
            "  group (0.0 0.0 10.0 12.0) at 0.5, shown at 0.5\n"
            "    text (0.0 0.0 10.0 12.0) \"xx\" 10, white, shown at 0.25\n"
            "  end, shown at 0.5\n"
            "end\n");
  EXPECT_EQ(dump(letters(2).opacity(1), {10, 12}), dump(letters(2), {10, 12}));
}

TEST(Layout, AClipOfSomethingTranslucentIsOneGroup) {
  EXPECT_EQ(dump(letters(2).opacity(0.8).clipped(Shape::roundedRectangle(8, true)), {10, 12}),
            "group (0.0 0.0 10.0 12.0) at 0.8 clip continuous 8\n"
            "  text (0.0 0.0 10.0 12.0) \"xx\" 10, white, shown at 0.8\n"
            "end\n");
}

TEST(Layout, NamedFramesAreToldInOrder) {
  const View view = vstack({HorizontalAlignment::leading, 0},
                           {box(10, 5).named("first"), box(20, 5).padding(1).named("second")})
                        .named("whole");
  const auto frames = layout(view, {22, 12}, fakes::CellMeasurer()).frames;
  EXPECT_EQ(frames,
            (std::vector<NamedFrame>{
                {"whole", {0, 0, 22, 12}}, {"first", {0, 0, 10, 5}}, {"second", {0, 5, 22, 7}}}));
}

TEST(Layout, AnEmptyViewAndASizeOfNothingAreFine) {
  EXPECT_EQ(dump(View(), {100, 100}), "");
  const View card = hstack({}, {letters(4), spacer(), letters(2)}).padding(20);
  EXPECT_EQ(layout(card, {0, 0}, fakes::CellMeasurer()).list.size(), 2U);
  EXPECT_EQ(layout(vstack({}, {}), {10, 10}, fakes::CellMeasurer()).list.size(), 0U);
}

TEST(Layout, DeepTreesAreMeasuredInAffordableTime) {
  fakes::CellMeasurer measurer;
  View view = letters(3);
  for (int depth = 0; depth < 40; ++depth) {
    view = depth % 2 == 0 ? hstack({}, {view, spacer()}) : vstack({}, {view, spacer()});
  }
  (void)layout(view, {1000, 1000}, measurer);
  EXPECT_LT(measurer.measured(), 100);
}

}  // namespace
}  // namespace orvane
