#include <gtest/gtest.h>

#include <limits>

#include "picture_comparison.h"
#include "scenes.h"

namespace orvane::testing_pictures {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

std::uint32_t at(const host::Picture& picture, int x, int y) {
  return picture.pixels[static_cast<std::size_t>(y * picture.width + x)];
}

int opacityAt(const host::Picture& picture, int x, int y) {
  return static_cast<int>(at(picture, x, y) >> 24);
}

TEST(Drawing, AnEmptyListClearsTheDamage) {
  Studio studio;
  host::Picture picture(4, 4);
  for (auto& pixel : picture.pixels) pixel = 0xFF112233;
  studio.painter->paint({}, {picture.buffer(), 1, {}, nullptr}, {{0, 0, 2, 4}});
  EXPECT_EQ(at(picture, 1, 1), 0U);
  EXPECT_EQ(at(picture, 2, 1), 0xFF112233);
}

TEST(Drawing, FillsArePremultiplied) {
  Studio studio;
  const DisplayList list{
      item({1, 1, 2, 2}, FillItem{Shape::rectangle(), Color::srgb(1, 0.5, 0, 0.4)})};
  const auto picture = studio.picture(list, {4, 4}, 1);
  EXPECT_EQ(at(picture, 0, 0), 0U);
  EXPECT_EQ(at(picture, 1, 1), 0x66663300);
}

TEST(Drawing, AnItemAtOpacityZeroIsNotDrawn) {
  Studio studio;
  DisplayItem hidden = item({0, 0, 4, 4}, FillItem{Shape::rectangle(), Color::white()});
  hidden.opacity = 0;
  EXPECT_EQ(at(studio.picture({hidden}, {4, 4}, 1), 2, 2), 0U);
}

TEST(Drawing, AMaterialIsItsTint) {
  Studio studio;
  const Color tint = Color::srgb(0.2, 0.4, 0.6, 0.5);
  const auto material =
      studio.picture({item({0, 0, 4, 4}, FillItem{Shape::rectangle(), Material{tint}})}, {4, 4}, 1);
  const auto color =
      studio.picture({item({0, 0, 4, 4}, FillItem{Shape::rectangle(), tint})}, {4, 4}, 1);
  EXPECT_EQ(material.pixels, color.pixels);
}

TEST(Drawing, AGradientRunsFromTheTopLeadingToTheBottomTrailingCorner) {
  Studio studio;
  const LinearGradient gradient{{Color::srgb(1, 0, 0), Color::srgb(0, 1, 0), Color::srgb(0, 0, 1)}};
  const auto picture = studio.picture(
      {item({0, 0, 101, 101}, FillItem{Shape::rectangle(), gradient})}, {101, 101}, 1);
  EXPECT_GT(at(picture, 0, 0) >> 16 & 0xFF, 250U);
  EXPECT_EQ(at(picture, 50, 50), 0xFF00FF00);
  EXPECT_EQ(at(picture, 100, 0), 0xFF00FF00);
  EXPECT_GT(at(picture, 100, 100) & 0xFF, 250U);
}

TEST(Drawing, AClearStopLendsNoColour) {
  Studio studio;
  const LinearGradient gradient{{Color::white(), Color::srgb(0, 0, 0, 0), Color::srgb(0, 0, 0, 0)}};
  const auto picture = studio.picture(
      {item({0, 0, 100, 100}, FillItem{Shape::rectangle(), gradient})}, {100, 100}, 1);
  for (int i = 0; i < 100; ++i)
    EXPECT_EQ(at(picture, i, i) >> 24, at(picture, i, i) & 0xFF) << "white, only thinner, at " << i;
}

TEST(Drawing, AGroupIsDrawnAsOnePicture) {
  Studio studio;
  const auto fill = item({0, 0, 4, 4}, FillItem{Shape::rectangle(), Color::white()});
  const DisplayList list{item({0, 0, 4, 4}, GroupBegin{0.5, {}}), fill, fill,
                         item({0, 0, 4, 4}, GroupEnd{})};
  EXPECT_NEAR(opacityAt(studio.picture(list, {4, 4}, 1), 2, 2), 128, 1);
}

TEST(Drawing, GroupsNest) {
  Studio studio;
  const DisplayList list{item({0, 0, 8, 8}, GroupBegin{0.5, {}}),
                         item({0, 0, 8, 8}, GroupBegin{0.5, Shape::circle()}),
                         item({0, 0, 8, 8}, FillItem{Shape::rectangle(), Color::white()}),
                         item({0, 0, 8, 8}, GroupEnd{}),
                         item({0, 0, 8, 8}, GroupEnd{}),
                         item({0, 0, 1, 1}, FillItem{Shape::rectangle(), Color::white()})};
  const auto picture = studio.picture(list, {8, 8}, 1);
  EXPECT_NEAR(opacityAt(picture, 4, 4), 64, 1);
  EXPECT_EQ(opacityAt(picture, 7, 7), 0) << "clipped away";
  EXPECT_EQ(opacityAt(picture, 0, 0), 255) << "after the groups";
}

TEST(Drawing, AClipIsAppliedOnceToTheWholeGroup) {
  Studio studio;
  const Shape shape = Shape::roundedRectangle(8, true);
  const auto fill = item({0, 0, 40, 40}, FillItem{Shape::rectangle(), Color::white()});
  const DisplayList clipped{item({0, 0, 40, 40}, GroupBegin{1, shape}), fill, fill, fill,
                            item({0, 0, 40, 40}, GroupEnd{})};
  const DisplayList shaped{item({0, 0, 40, 40}, FillItem{shape, Color::white()})};
  const Comparison result =
      compare(studio.picture(shaped, {40, 40}, 1), studio.picture(clipped, {40, 40}, 1), {1, 0});
  EXPECT_TRUE(result.matches) << result.differences << " up to " << result.largest;
}

TEST(Drawing, AGroupOutOfOrderDoesNoHarm) {
  Studio studio;
  const auto fill = item({0, 0, 4, 4}, FillItem{Shape::rectangle(), Color::white()});
  const DisplayList open{item({0, 0, 4, 4}, GroupBegin{0.5, {}}), fill};
  EXPECT_NEAR(opacityAt(studio.picture(open, {4, 4}, 1), 2, 2), 128, 1);
  const DisplayList closed{item({0, 0, 4, 4}, GroupEnd{}), fill};
  EXPECT_EQ(opacityAt(studio.picture(closed, {4, 4}, 1), 2, 2), 255);
}

TEST(Drawing, AHairlineIsOnePixelAtSmallScalesAndTwoAtTwo) {
  Studio studio;
  const DisplayList list{item({2, 2, 20, 20}, StrokeItem{Shape::rectangle(), 1, Color::white()})};
  for (const auto& [scale, width] : {std::pair{1.0, 1}, {1.25, 1}, {1.5, 2}, {2.0, 2}}) {
    const auto picture = studio.picture(list, {24, 24}, scale);
    int inked = 0;
    for (int x = 0; x < picture.width / 2; ++x) {
      const int value = opacityAt(picture, x, picture.height / 2);
      EXPECT_TRUE(value == 0 || value == 255) << "blurred at scale " << scale;
      inked += value == 255;
    }
    EXPECT_EQ(inked, width) << scale;
  }
}

TEST(Drawing, AStrokeStaysInsideItsOutline) {
  Studio studio;
  for (const Shape& shape :
       {Shape::rectangle(), Shape::circle(), Shape::capsule(), Shape::roundedRectangle(6, true)}) {
    const auto picture =
        studio.picture({item({5, 5, 20, 20}, StrokeItem{shape, 3, Color::white()})}, {30, 30}, 1);
    for (int i = 0; i < 30; ++i) {
      EXPECT_EQ(opacityAt(picture, i, 4), 0);
      EXPECT_EQ(opacityAt(picture, 4, i), 0);
      EXPECT_EQ(opacityAt(picture, i, 25), 0);
    }
    EXPECT_EQ(opacityAt(picture, 15, 6), 255);
    EXPECT_EQ(opacityAt(picture, 15, 15), 0);
  }
}

TEST(Drawing, AStrokeWiderThanItsShapeFillsIt) {
  Studio studio;
  const auto picture = studio.picture(
      {item({2, 2, 6, 6}, StrokeItem{Shape::rectangle(), 30, Color::white()})}, {10, 10}, 1);
  EXPECT_EQ(opacityAt(picture, 5, 5), 255);
  EXPECT_EQ(opacityAt(picture, 1, 5), 0);
}

TEST(Drawing, AShadowIsDrawnOnlyOutsideItsShapeAndWithinItsReach) {
  Studio studio;
  const Rect frame{60, 60, 120, 100};
  const DisplayList list{
      item(frame, ShadowItem{Shape::roundedRectangle(8, true), Color::black(), 22, {0, 12}})};
  const auto picture = studio.picture(list, {240, 240}, 1);
  for (int y = 62; y < 158; ++y) ASSERT_EQ(opacityAt(picture, 120, y), 0) << "inside, at " << y;
  EXPECT_GT(opacityAt(picture, 120, 161), 100);
  EXPECT_GT(opacityAt(picture, 120, 161), opacityAt(picture, 120, 58)) << "it falls downwards";
  const Rect reach = list[0].bounds();
  for (int y = 0; y < 240; ++y)
    for (int x = 0; x < 240; ++x)
      if (!reach.contains({double(x), double(y), 1, 1})) {
        ASSERT_EQ(opacityAt(picture, x, y), 0) << x << " " << y;
      }
  for (int x = 0; x < 240; ++x)
    EXPECT_NEAR(opacityAt(picture, x, 165), opacityAt(picture, 239 - x, 165), 1) << x;
}

TEST(Drawing, ALargeShadowHasTheCornersAndEdgesOfASmallOne) {
  Studio studio;
  const ShadowItem shadow{Shape::roundedRectangle(8, true), Color::black(), 22, {0, 12}};
  const auto small = studio.picture({item({40, 40, 130, 150}, shadow)}, {210, 260}, 1);
  const auto large = studio.picture({item({40, 40, 330, 250}, shadow)}, {410, 360}, 1);
  for (int y = 0; y < 70; ++y)
    for (int x = 0; x < 70; ++x) {
      ASSERT_NEAR(opacityAt(small, x, y), opacityAt(large, x, y), 1) << x << " " << y;
      ASSERT_NEAR(opacityAt(small, 209 - x, 259 - y), opacityAt(large, 409 - x, 359 - y), 1);
    }
}

TEST(Drawing, SymbolsStayWithinTheirFrameAndUnknownOnesDrawNothing) {
  Studio studio;
  const auto unknown = studio.picture(
      {item({0, 0, 24, 24}, SymbolItem{"nobody.knows", {20}, Color::white()})}, {24, 24}, 1);
  for (const std::uint32_t pixel : unknown.pixels) ASSERT_EQ(pixel, 0U);
  const auto known = studio.picture(
      {item({2, 2, 24, 24}, SymbolItem{"timer", {20}, Color::white()})}, {28, 28}, 1);
  int inked = 0;
  for (const std::uint32_t pixel : known.pixels) inked += pixel != 0;
  EXPECT_GT(inked, 60);
  for (int i = 0; i < 28; ++i) EXPECT_EQ(opacityAt(known, i, 1) + opacityAt(known, 1, i), 0);
}

TEST(Drawing, LinesOfATranslucentSymbolDoNotShowThroughOneAnother) {
  Studio studio;
  const auto picture = studio.picture(
      {item({0, 0, 60, 58},
            SymbolItem{"calendar", {48, FontWeight::bold}, Color::white().opacity(0.5)})},
      {60, 60}, 1);
  for (const std::uint32_t pixel : picture.pixels) ASSERT_LE(pixel >> 24, 128U);
}

TEST(Drawing, FramesThatMakeNoSenseDoNoHarm) {
  Studio studio;
  const Rect frames[] = {{0, 0, 0, 0},
                         {5, 5, -3, -3},
                         {nan, nan, nan, nan},
                         {0, 0, 1e12, 1e12},
                         {-1e12, -1e12, 2e12, 2e12},
                         {1e300, 0, 1, 1},
                         {0, nan, 10, 10},
                         {-1e308, 0, 1e308, 5}};
  const LinearGradient gradient{{Color::white(), Color::red(), Color::clear()}};
  for (const Rect& frame : frames) {
    DisplayList list;
    for (const Shape& shape : {Shape::rectangle(), Shape::roundedRectangle(1e9, true),
                               Shape::capsule(), Shape::circle(), Shape::roundedRectangle(nan)}) {
      list.push_back(item(frame, GroupBegin{0.5, shape}));
      list.push_back(item(frame, FillItem{shape, gradient}));
      list.push_back(item(frame, FillItem{shape, Color::white()}));
      list.push_back(item(frame, StrokeItem{shape, 1e9, Color::white()}));
      list.push_back(item(frame, ShadowItem{shape, Color::black(), 1e9, {1e9, -1e9}}));
      list.push_back(item(frame, ShadowItem{shape, Color::black(), 22, {nan, 0}}));
      list.push_back(item(frame, SymbolItem{"timer", {1e9}, Color::white()}));
      list.push_back(item(frame, SymbolItem{"timer", {nan}, Color::white()}));
      list.push_back(item(frame, TextItem{"Text", {}, Color::white(), 1e12, {}}));
      list.push_back(item(frame, TextItem{"12", {}, Color::white(), 10, {1e12, nan}}));
      list.push_back(item(frame, GroupEnd{}));
    }
    const auto picture = studio.picture(list, {20, 20}, 1.5);
    EXPECT_EQ(picture.width, 30);
  }
}

TEST(Drawing, TargetsThatMakeNoSenseDoNoHarm) {
  Studio studio;
  const DisplayList list = cardScene(studio, Theme::dark, "00:00:00");
  host::Picture picture(4, 4);
  const std::vector<PixelRect> all{{0, 0, 4, 4}};
  for (const double scale : {0.0, -1.0, nan, std::numeric_limits<double>::infinity()})
    studio.painter->paint(list, {picture.buffer(), scale, {}, nullptr}, all);
  studio.painter->paint(list, {PixelBuffer{}, 1, {}, nullptr}, all);
  const int most = std::numeric_limits<int>::max();
  const int least = std::numeric_limits<int>::min();
  studio.painter->paint(list, {picture.buffer(), 1, {}, nullptr},
                        {{least, least, most, most}, {most, most, most, most}, {3, 3, -5, 2}, {}});
  for (const std::uint32_t pixel : picture.pixels) EXPECT_EQ(pixel, 0U);
}

}  // namespace
}  // namespace orvane::testing_pictures
