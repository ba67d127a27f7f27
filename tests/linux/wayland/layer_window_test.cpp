#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "linux/wayland/desk.h"

namespace orvane::host::wayland {
namespace {

using testing::SizeIs;

class LayerWindowTest : public Desk {};

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

TEST_F(LayerWindowTest, HearsNoTicksWhileNobodySeesIt) {
  show();
  compositor.releasesAtOnce = true;
  tick(10);
  compositor.showsAtOnce = false;
  tick(2);
  EXPECT_EQ(schedule.listeners(), 1U) << "the compositor may only be slow";
  tick();
  EXPECT_EQ(schedule.listeners(), 0U);
  actor.setWallClock({1'795'003'000.7});
  view->willChange.send();
  settle();
  EXPECT_EQ(schedule.listeners(), 0U);
  const auto before = pictures().size();
  surface().showFrame();
  settle();
  EXPECT_EQ(schedule.listeners(), 1U);
  ASSERT_THAT(pictures(), SizeIs(before + 1));
  EXPECT_EQ(lastPicture().pixels, painted({1'795'003'000}, 1, {60, 40}, 300, 100));
}

TEST_F(LayerWindowTest, ASurfaceThatWasNotSeenYetGoesOnHearingTicks) {
  compositor.showsAtOnce = false;
  show();
  tick(9);
  EXPECT_EQ(schedule.listeners(), 1U);
  tick();
  EXPECT_EQ(schedule.listeners(), 0U);
}

TEST_F(LayerWindowTest, ASurfaceThatGetsNoRoomHearsNoTicksUntilItDoes) {
  compositor.configuresAtOnce = false;
  compositor.releasesAtOnce = true;
  show();
  const auto built = view->built.size();
  tick(9);
  EXPECT_EQ(schedule.listeners(), 1U);
  tick();
  EXPECT_EQ(schedule.listeners(), 0U);
  view->willChange.send();
  settle();
  EXPECT_EQ(schedule.listeners(), 0U);
  EXPECT_THAT(view->built, SizeIs(built)) << "views are not built for nobody";
  actor.setWallClock({1'795'003'000.7});
  surface().configure(300, 100);
  settle();
  EXPECT_EQ(schedule.listeners(), 1U);
  ASSERT_THAT(pictures(), SizeIs(1));
  EXPECT_EQ(lastPicture().pixels, painted({1'795'003'000}, 1, {60, 40}, 300, 100));
  instant = {1'795'003'000};
  tick(3);
  EXPECT_EQ(schedule.listeners(), 1U);
}

TEST_F(LayerWindowTest, HearsNoTicksWhileTheCompositorKeepsItsBuffers) {
  compositor.releasesAtOnce = true;
  show();
  tick(10);
  compositor.releasesAtOnce = false;
  tick(2);
  EXPECT_EQ(surface().heldBuffers(), 2U);
  EXPECT_FALSE(surface().isFrameAwaited());
  tick();
  EXPECT_EQ(schedule.listeners(), 1U) << "the compositor may only be slow";
  tick();
  EXPECT_EQ(schedule.listeners(), 0U);
  const auto before = pictures().size();
  actor.setWallClock({1'795'003'000.7});
  surface().releaseBuffers();
  settle();
  EXPECT_EQ(schedule.listeners(), 1U);
  ASSERT_THAT(pictures(), SizeIs(before + 1));
  EXPECT_EQ(lastPicture().pixels, painted({1'795'003'000}, 1, {60, 40}, 300, 100));
}

TEST_F(LayerWindowTest, ClosedWhileNobodySeesItItComesBackWithItsTicks) {
  compositor.showsAtOnce = false;
  show();
  tick(10);
  surface().close();
  compositor.showsAtOnce = true;
  settle();
  actor.advance(std::chrono::milliseconds(250));
  settle();
  ASSERT_THAT(compositor.surfaces(), SizeIs(2));
  EXPECT_EQ(schedule.listeners(), 1U);
  EXPECT_EQ(lastPicture().pixels, painted({1'795'000'000}, 1, {60, 40}, 300, 100));
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

TEST_F(LayerWindowTest, BuffersEndWithTheirSurfaceThoughTheyAreNotReleased) {
  compositor.releasesOfGone = false;
  show();
  for (int i = 0; i < 20; ++i) {
    window->close();
    settle();
    EXPECT_EQ(compositor.countBuffers(), 0);
    window->orderBack();
    settle();
    EXPECT_EQ(compositor.countBuffers(), 1);
  }
}

TEST_F(LayerWindowTest, KeepsFewBuffersOfOtherSizesThatAreNotReleased) {
  compositor.releasesOfGone = false;
  show();
  for (int i = 0; i < 20; ++i) {
    view->panel.width = 310 + i;
    tick(2);
    ASSERT_EQ(lastPicture().width, 310 + i);
    // Two of the present size, and as many of each of the two before it.
    EXPECT_LE(compositor.countBuffers(), 6);
  }
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

}  // namespace
}  // namespace orvane::host::wayland
