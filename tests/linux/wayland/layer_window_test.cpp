#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "linux/wayland/desk.h"

namespace orvane::host::wayland {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;
using namespace std::chrono_literals;

class LayerWindowTest : public Desk {};

long changedPixels(const fakes::FakeSurface::Picture& picture) {
  long pixels = 0;
  for (const auto& rect : picture.changed) pixels += static_cast<long>(rect.width) * rect.height;
  return pixels;
}

// ---- The surface

TEST_F(LayerWindowTest, StandsBelowWindowsAndLetsClicksThrough) {
  show();
  ASSERT_THAT(compositor.surfaces(), SizeIs(1));
  EXPECT_EQ(surface().layer, 1U);
  EXPECT_EQ(surface().nameSpace, "org.orvane.Orvane");
  EXPECT_EQ(surface().anchor, 5U);
  EXPECT_EQ(surface().exclusiveZone, -1);
  EXPECT_EQ(surface().keyboard, 0U);
  EXPECT_FALSE(surface().takesPointer);
  EXPECT_NE(surface().output, nullptr);
}

TEST_F(LayerWindowTest, CoversOnlyWhatIsDrawn) {
  show();
  ASSERT_THAT(pictures(), SizeIs(1));
  EXPECT_EQ(pictures()[0].width, 300);
  EXPECT_EQ(pictures()[0].height, 100);
  EXPECT_EQ(pictures()[0].marginLeft, 60);
  EXPECT_EQ(pictures()[0].marginTop, 40);
  EXPECT_EQ(pictures()[0].pixels, painted(instant, 1, {60, 40}, 300, 100));
}

TEST_F(LayerWindowTest, IsRaisedAndTakesClicksWhenItIsToldTo) {
  compositor.addOutput({.name = "DP-1"});
  ASSERT_EQ(connect(), "");
  window = makeWindow();
  window->properties.level = 0;
  window->properties.ignoresMouseEvents = false;
  window->orderBack();
  settle();
  EXPECT_EQ(surface().layer, 2U);
  EXPECT_TRUE(surface().takesPointer);
}

TEST_F(LayerWindowTest, ChangedPropertiesTakeEffectAtTheNextOrderBack) {
  show();
  window->properties.ignoresMouseEvents = false;
  tick();
  EXPECT_FALSE(surface().isGone);
  window->orderBack();
  settle();
  EXPECT_TRUE(surface().isGone);
  EXPECT_TRUE(surface(1).takesPointer);
  EXPECT_THAT(pictures(1), SizeIs(1));
}

TEST_F(LayerWindowTest, DrawsOnlyWhenItsSizeIsGranted) {
  compositor.configuresAtOnce = false;
  show();
  EXPECT_THAT(pictures(), SizeIs(0));
  surface().configure(300, 100);
  settle();
  EXPECT_THAT(pictures(), SizeIs(1));
}

TEST_F(LayerWindowTest, ZeroLeavesTheSizeToIt) {
  compositor.configuresAtOnce = false;
  show();
  surface().configure(0, 0);
  settle();
  ASSERT_THAT(pictures(), SizeIs(1));
  EXPECT_EQ(pictures()[0].width, 300);
}

TEST_F(LayerWindowTest, MakesDoWithLessRoomThanItAskedFor) {
  compositor.configuresAtOnce = false;
  compositor.releasesAtOnce = true;
  show();
  surface().configure(200, 100);
  settle();
  ASSERT_THAT(pictures(), SizeIs(1));
  EXPECT_EQ(pictures()[0].width, 200);
  EXPECT_EQ(pictures()[0].pixels, painted(instant, 1, {60, 40}, 200, 100));
  tick(3);
  EXPECT_EQ(lastPicture().pixels, painted(instant, 1, {60, 40}, 200, 100));
}

TEST_F(LayerWindowTest, SettingTheSameFrameAgainDrawsNothing) {
  show();
  for (int i = 0; i < 6; ++i) {
    window->setFrame({0, 0, 1280, 720}, true);
    window->orderBack();
  }
  settle();
  EXPECT_THAT(compositor.surfaces(), SizeIs(1));
  EXPECT_THAT(pictures(), SizeIs(1));
}

TEST_F(LayerWindowTest, CloseTakesItOffAndOrderBackBringsItBack) {
  show();
  window->close();
  settle();
  EXPECT_TRUE(surface().isGone);
  EXPECT_EQ(schedule.listeners(), 0U);
  window->orderBack();
  settle();
  ASSERT_THAT(compositor.surfaces(), SizeIs(2));
  EXPECT_THAT(pictures(1), SizeIs(1));
}

TEST_F(LayerWindowTest, HearsNoTicksUnlessItIsOnAScreen) {
  compositor.addOutput({.name = "DP-1"});
  ASSERT_EQ(connect(), "");
  window = makeWindow({5000, 0, 100, 100});
  EXPECT_EQ(schedule.listeners(), 0U);
  window->orderBack();
  EXPECT_EQ(schedule.listeners(), 0U);
  window->setFrame({0, 0, 1280, 720}, true);
  EXPECT_EQ(schedule.listeners(), 1U);
  window.reset();
  EXPECT_EQ(schedule.listeners(), 0U);
}

// ---- Ticks and changes

TEST_F(LayerWindowTest, FirstPictureShowsTheWholeSecondOfItsBuilding) {
  show();
  EXPECT_EQ(view->built.front(), Date{1'795'000'000});
}

TEST_F(LayerWindowTest, ATickChangesOnlyItsDigit) {
  show();
  tick();
  ASSERT_THAT(pictures(), SizeIs(2));
  EXPECT_EQ(changedPixels(pictures()[0]), 300 * 100);
  // A digit is 24 × 48 points and its glyph may reach a little beyond.
  EXPECT_LE(changedPixels(pictures()[1]), 30 * 54);
  EXPECT_EQ(pictures()[1].pixels, painted(instant, 1, {60, 40}, 300, 100));
}

TEST_F(LayerWindowTest, EveryPictureIsWholeWhicheverBufferItIsDrawnInto) {
  show();
  for (int i = 0; i < 25; ++i) {
    // Held one picture longer in every third round, so that the buffers' turns vary.
    if (i % 3 != 0) surface().releaseBuffers();
    tick();
    ASSERT_EQ(lastPicture().pixels, painted(instant, 1, {60, 40}, 300, 100)) << i;
    surface().releaseBuffers();
  }
}

TEST_F(LayerWindowTest, ATickThatChangesNothingCommitsNothing) {
  show();
  const int commits = surface().commits;
  schedule.tick(instant);
  settle();
  EXPECT_EQ(surface().commits, commits);
}

TEST_F(LayerWindowTest, NothingIsDrawnUntilTheLastPictureIsShown) {
  compositor.showsAtOnce = false;
  show();
  tick(4);
  EXPECT_THAT(pictures(), SizeIs(1));
  EXPECT_THAT(view->built, SizeIs(2)) << "views are not built for nobody";
  surface().showFrame();
  settle();
  ASSERT_THAT(pictures(), SizeIs(2));
  EXPECT_EQ(lastPicture().pixels, painted(instant, 1, {60, 40}, 300, 100));
}

TEST_F(LayerWindowTest, ASlowCompositorMissesNoSecondOnceItIsReady) {
  compositor.showsAtOnce = false;
  show();
  for (int i = 0; i < 5; ++i) {
    surface().showFrame();
    settle();
    surface().releaseBuffers();
    tick();
    EXPECT_EQ(lastPicture().pixels, painted(instant, 1, {60, 40}, 300, 100));
  }
  EXPECT_THAT(pictures(), SizeIs(6));
}

TEST_F(LayerWindowTest, WaitsForABufferWhenTheCompositorHoldsBoth) {
  show();
  tick(3);
  EXPECT_THAT(pictures(), SizeIs(2));
  surface().releaseBuffers();
  settle();
  ASSERT_THAT(pictures(), SizeIs(3));
  EXPECT_EQ(lastPicture().pixels, painted(instant, 1, {60, 40}, 300, 100));
}

TEST_F(LayerWindowTest, KeepsToOneBufferWhereItIsReleasedAtOnce) {
  compositor.releasesAtOnce = true;
  show();
  tick(5);
  EXPECT_THAT(pictures(), SizeIs(6));
  EXPECT_EQ(lastPicture().pixels, painted(instant, 1, {60, 40}, 300, 100));
}

TEST_F(LayerWindowTest, APublishedChangeIsDrawnInALaterTurn) {
  show();
  const auto built = view->built.size();
  view->willChange.send();
  view->panel.width = 310;
  view->willChange.send();
  EXPECT_THAT(view->built, SizeIs(built)) << "within the announcement";
  settle();
  EXPECT_EQ(lastPicture().width, 310);
  EXPECT_EQ(view->built.back(), instant);
}

TEST_F(LayerWindowTest, APublishedChangeShowsNoSecondBeforeItsTick) {
  show();
  tick(2);
  actor.setWallClock(instant + 0.9);
  view->willChange.send();
  settle();
  EXPECT_EQ(view->built.back(), instant);
}

TEST_F(LayerWindowTest, AChangeThatIsAnnouncedByAClosedWindowIsNotDrawn) {
  show();
  view->willChange.send();
  window.reset();
  settle();
  EXPECT_THAT(pictures(), SizeIs(1));
}

// ---- Size

TEST_F(LayerWindowTest, GrowsAtOnceAndKeepsTheOldPictureUntilItMay) {
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

TEST_F(LayerWindowTest, MovesTogetherWithThePictureThatBelongsThere) {
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

TEST_F(LayerWindowTest, ShrinksOnlyWhenItWasTooLargeForAWhile) {
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

TEST_F(LayerWindowTest, HasNoSurfaceWhileNothingIsDrawn) {
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

TEST_F(LayerWindowTest, DrawsInTheScaleThatTheCompositorPrefers) {
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

TEST_F(LayerWindowTest, HalfAPixelCountsAsOne) {
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

TEST_F(LayerWindowTest, BeginsAndEndsOnWholePixels) {
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

TEST_F(LayerWindowTest, LiesOnThePixelsOfEveryScaleThatComes) {
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

TEST_F(LayerWindowTest, FollowsTheScaleOfItsOutput) {
  auto& output = compositor.addOutput({.name = "DP-1"});
  ASSERT_EQ(connect(), "");
  window = makeWindow();
  window->orderBack();
  settle();
  compositor.changeOutput(output, {.name = "DP-1", .width = 2560, .height = 1440, .scale = 2});
  settle();
  EXPECT_EQ(lastPicture().width, 600);
  EXPECT_EQ(lastPicture().pixels, painted(instant, 2, {120, 80}, 600, 200));
}

// ---- Outputs, refusals, the end

TEST_F(LayerWindowTest, MovesToTheScreenWhoseFrameItGets) {
  compositor.addOutput({.name = "DP-1"});
  compositor.addOutput({.name = "DP-2", .x = 1280, .width = 1920, .height = 1080});
  ASSERT_EQ(connect(), "");
  window = makeWindow();
  window->orderBack();
  settle();
  window->setFrame({1280, 0, 1920, 1080}, true);
  settle();
  EXPECT_TRUE(surface(0).isGone);
  ASSERT_THAT(compositor.surfaces(), SizeIs(2));
  EXPECT_NE(surface(1).output, surface(0).output);
  EXPECT_EQ(lastPicture().marginLeft, 60);
}

TEST_F(LayerWindowTest, LeavesWithItsOutputAndIsBackWhenItIsPlacedAgain) {
  auto& output = compositor.addOutput({.name = "DP-1"});
  ASSERT_EQ(connect(), "");
  window = makeWindow();
  window->orderBack();
  settle();
  surface().close();
  compositor.removeOutput(output);
  settle();
  EXPECT_TRUE(surface().isGone);
  EXPECT_EQ(schedule.listeners(), 0U);
  actor.advance(60s);
  settle();
  EXPECT_THAT(compositor.surfaces(), SizeIs(1));
  compositor.addOutput({.name = "DP-1"});
  settle();
  window->setFrame({0, 0, 1280, 720}, true);
  settle();
  ASSERT_THAT(compositor.surfaces(), SizeIs(2));
  EXPECT_THAT(pictures(1), SizeIs(1));
}

TEST_F(LayerWindowTest, ASurfaceThatWasClosedComesBackALittleLater) {
  show();
  surface().close();
  settle();
  EXPECT_TRUE(surface().isGone);
  tick();
  EXPECT_THAT(compositor.surfaces(), SizeIs(1)) << "not at once";
  actor.advance(250ms);
  settle();
  ASSERT_THAT(compositor.surfaces(), SizeIs(2));
  EXPECT_THAT(pictures(1), SizeIs(1));
}

TEST_F(LayerWindowTest, ACompositorThatRefusesItIsNotAskedForEver) {
  testing::internal::CaptureStderr();
  show();
  for (int i = 0; i < 40; ++i) {
    if (!compositor.surfaces().back()->isGone) compositor.surfaces().back()->close();
    settle();
    actor.advance(60s);
    settle();
  }
  EXPECT_THAT(compositor.surfaces(), SizeIs(9));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "orvane: The compositor keeps closing the window; it stays closed.\n");
  EXPECT_EQ(schedule.listeners(), 0U);
  window->orderBack();
  settle();
  EXPECT_THAT(compositor.surfaces(), SizeIs(10)) << "the user may ask again";
}

TEST_F(LayerWindowTest, ALostConnectionIsToldOnceAndLeavesNoScreens) {
  show();
  testing::internal::CaptureStderr();
  compositor.breakConnection();
  settle();
  settle();
  EXPECT_EQ(lost, 1);
  EXPECT_THAT(server->screens(), SizeIs(0));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "orvane: The connection to the Wayland compositor is lost.\n");
  EXPECT_EQ(schedule.listeners(), 0U);
  window->setFrame({0, 0, 1280, 720}, true);
  window->orderBack();
  window->close();
  auto another = makeWindow();
  another->orderBack();
}

TEST_F(LayerWindowTest, ABrokenRuleIsToldInOneLine) {
  show();
  testing::internal::CaptureStderr();
  compositor.postError("the rule");
  settle();
  settle();
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_EQ(lost, 1);
  EXPECT_THAT(told, HasSubstr("the rule"));
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1) << told;
}

}  // namespace
}  // namespace orvane::host::wayland
