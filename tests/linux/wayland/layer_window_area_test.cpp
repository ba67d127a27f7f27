#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "linux/wayland/desk.h"

namespace orvane::host::wayland {
namespace {

using testing::SizeIs;

// How large a window's surface is, and in which pixels.
class LayerWindowAreaTest : public Desk {};

TEST_F(LayerWindowAreaTest, GrowsAtOnceAndKeepsTheOldPictureUntilItMay) {
  show();
  compositor.configuresAtOnce = false;
  view->panel = {60, 40, 500, 100};
  tick(2);
  EXPECT_EQ(surface().width, 500U);
  EXPECT_THAT(pictures(), SizeIs(1));
  surface().configure(500, 100);
  settle();
  ASSERT_THAT(pictures(), SizeIs(2));
  EXPECT_EQ(pictures()[1].width, 500);
  EXPECT_EQ(changedPixels(pictures()[1]), 500 * 100);
  EXPECT_EQ(pictures()[1].pixels, painted(instant, 1, {60, 40}, 500, 100));
}

TEST_F(LayerWindowAreaTest, MovesTogetherWithThePictureThatBelongsThere) {
  show();
  compositor.configuresAtOnce = false;
  view->panel = {20, 40, 340, 100};
  tick();
  EXPECT_EQ(lastPicture().marginLeft, 60);
  surface().configure(340, 100);
  settle();
  EXPECT_EQ(lastPicture().marginLeft, 20);
  EXPECT_EQ(lastPicture().pixels, painted(instant, 1, {20, 40}, 340, 100));
}

TEST_F(LayerWindowAreaTest, ShrinksOnlyWhenItWasTooLargeForAWhile) {
  compositor.releasesAtOnce = true;
  show();
  view->panel = {60, 40, 200, 100};
  tick(5);
  EXPECT_EQ(lastPicture().width, 300);
  EXPECT_EQ(lastPicture().pixels, painted(instant, 1, {60, 40}, 300, 100));
  tick(8);
  EXPECT_EQ(lastPicture().width, 200);
  EXPECT_EQ(lastPicture().pixels, painted(instant, 1, {60, 40}, 200, 100));
}

TEST_F(LayerWindowAreaTest, HasNoSurfaceWhileNothingIsDrawn) {
  show();
  view->panel = {};
  tick();
  EXPECT_TRUE(surface().isGone);
  tick(2);
  EXPECT_THAT(compositor.surfaces(), SizeIs(1));
  view->panel = {10, 20, 150, 60};
  tick();
  ASSERT_THAT(compositor.surfaces(), SizeIs(2));
  EXPECT_EQ(lastPicture().width, 150);
}

// ---- Scale

TEST_F(LayerWindowAreaTest, DrawsInTheScaleThatTheCompositorPrefers) {
  show();
  surface().preferScale(180);
  settle();
  const auto& picture = lastPicture();
  EXPECT_EQ(picture.width, 450);
  EXPECT_EQ(picture.height, 150);
  EXPECT_EQ(picture.viewWidth, 300);
  EXPECT_EQ(picture.viewHeight, 100);
  EXPECT_EQ(picture.bufferScale, 1);
  EXPECT_EQ(changedPixels(picture), 450 * 150);
  EXPECT_EQ(picture.pixels, painted(instant, 1.5, {90, 60}, 450, 150));
}

TEST_F(LayerWindowAreaTest, HalfAPixelCountsAsOne) {
  view->panel = {1, 0, 1, 1};
  show();
  surface().preferScale(180);
  settle();
  // Widened to whole pixels: two points make three.
  EXPECT_EQ(lastPicture().marginLeft, 0);
  EXPECT_EQ(lastPicture().viewWidth, 2);
  EXPECT_EQ(lastPicture().width, 3);
  view->panel = {0, 0, 60, 40};
  surface().preferScale(121);
  settle();
  EXPECT_EQ(lastPicture().viewWidth, 60);
  EXPECT_EQ(lastPicture().width, 61);
  EXPECT_EQ(lastPicture().height, 40);
}

TEST_F(LayerWindowAreaTest, BeginsAndEndsOnWholePixels) {
  view->panel = {61, 41, 300, 100};
  show();
  surface().preferScale(150);
  settle();
  const auto& picture = lastPicture();
  EXPECT_EQ(picture.marginLeft, 60);
  EXPECT_EQ(picture.marginTop, 40);
  EXPECT_EQ(picture.viewWidth, 304);
  EXPECT_EQ(picture.viewHeight, 104);
  EXPECT_EQ(picture.width, 380);
  EXPECT_EQ(picture.pixels, painted(instant, 1.25, {75, 50}, 380, 130));
}

TEST_F(LayerWindowAreaTest, LiesOnThePixelsOfEveryScaleThatComes) {
  view->panel = {61, 41, 301, 101};
  show();
  for (const std::uint32_t scale : {150U, 180U, 210U, 120U}) {
    surface().preferScale(scale);
    settle();
    const auto& picture = lastPicture();
    const double factor = scale / 120.0;
    EXPECT_DOUBLE_EQ(picture.viewWidth * factor, picture.width);
    EXPECT_DOUBLE_EQ(picture.viewHeight * factor, picture.height);
    const PixelPoint origin{static_cast<int>(picture.marginLeft * factor),
                            static_cast<int>(picture.marginTop * factor)};
    EXPECT_DOUBLE_EQ(picture.marginLeft * factor, origin.x);
    EXPECT_EQ(picture.pixels, painted(instant, factor, origin, picture.width, picture.height));
    surface().releaseBuffers();
    settle();
  }
}

TEST_F(LayerWindowAreaTest, FollowsTheScaleOfItsOutput) {
  show();
  compositor.changeOutput(*output, {.name = "DP-1", .width = 2560, .height = 1440, .scale = 2});
  settle();
  EXPECT_EQ(lastPicture().width, 600);
  EXPECT_EQ(lastPicture().pixels, painted(instant, 2, {120, 80}, 600, 200));
}

TEST_F(LayerWindowAreaTest, AnOutputOfAnotherSizeIsNotDrawnForTheOldOne) {
  show();
  const auto shown = pictures().size();
  compositor.changeOutput(*output, {.name = "DP-1", .width = 2048, .height = 1152, .scale = 2});
  settle();
  EXPECT_THAT(pictures(), SizeIs(shown));
  window->setFrame({0, 0, 1024, 576}, true);
  settle();
  EXPECT_THAT(pictures(), SizeIs(shown + 1));
  EXPECT_EQ(lastPicture().pixels, painted(instant, 2, {120, 80}, 600, 200, {1024, 576}));
}

}  // namespace
}  // namespace orvane::host::wayland
