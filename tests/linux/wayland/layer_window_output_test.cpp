#include <glib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "linux/wayland/desk.h"

namespace orvane::host::wayland {
namespace {

using testing::HasSubstr;
using testing::SizeIs;
using namespace std::chrono_literals;

// Outputs that come and go, refusals, and the end.
class LayerWindowOutputTest : public Desk {};

TEST_F(LayerWindowOutputTest, MovesToTheScreenWhoseFrameItGets) {
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

TEST_F(LayerWindowOutputTest, WindowsOfMirroredOutputsStandOnOneEach) {
  compositor.addOutput({.name = "DP-1"});
  compositor.addOutput({.name = "DP-2"});
  ASSERT_EQ(connect(), "");
  EXPECT_THAT(server->screens(), SizeIs(2));
  window = makeWindow();
  window->orderBack();
  auto second = makeWindow();
  second->orderBack();
  settle();
  ASSERT_THAT(compositor.surfaces(), SizeIs(2));
  EXPECT_NE(surface(0).output, surface(1).output);
  // Placing all of them once more changes nothing.
  window->setFrame({0, 0, 1280, 720}, true);
  second->setFrame({0, 0, 1280, 720}, true);
  settle();
  EXPECT_THAT(compositor.surfaces(), SizeIs(2));
  // An output whose window is closed is free again.
  window->close();
  window = makeWindow();
  window->orderBack();
  settle();
  ASSERT_THAT(compositor.surfaces(), SizeIs(3));
  EXPECT_EQ(surface(2).output, surface(0).output);
}

TEST_F(LayerWindowOutputTest, AWindowMoreThanThereAreOutputsSharesTheFirst) {
  show();
  auto second = makeWindow();
  second->orderBack();
  settle();
  ASSERT_THAT(compositor.surfaces(), SizeIs(2));
  EXPECT_EQ(surface(1).output, surface(0).output);
}

TEST_F(LayerWindowOutputTest, LeavesWithItsOutputAndIsBackWhenItIsPlacedAgain) {
  show();
  surface().close();
  compositor.removeOutput(*output);
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

TEST_F(LayerWindowOutputTest, ASurfaceThatWasClosedComesBackALittleLater) {
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

TEST_F(LayerWindowOutputTest, ACompositorThatRefusesItIsNotAskedForEver) {
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

TEST_F(LayerWindowOutputTest, ALostConnectionIsToldOnceAndLeavesNoScreens) {
  show();
  compositor.breakConnection();
  settle();
  settle();
  ASSERT_THAT(losses, SizeIs(1));
  EXPECT_EQ(losses[0].what, "The connection to the Wayland compositor is lost");
  EXPECT_FALSE(losses[0].isRefusal);
  EXPECT_THAT(server->screens(), SizeIs(0));
  EXPECT_EQ(schedule.listeners(), 0U);
  window->setFrame({0, 0, 1280, 720}, true);
  window->orderBack();
  window->close();
  auto another = makeWindow();
  another->orderBack();
}

TEST_F(LayerWindowOutputTest, ABrokenRuleIsToldInOneLine) {
  show();
  testing::internal::CaptureStderr();
  compositor.postError("the rule");
  settle();
  settle();
  const std::string told = testing::internal::GetCapturedStderr();
  ASSERT_THAT(losses, SizeIs(1));
  EXPECT_EQ(losses[0].what, "The Wayland compositor ended the connection");
  EXPECT_TRUE(losses[0].isRefusal);
  EXPECT_THAT(told, HasSubstr("the rule"));
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1) << told;
}

TEST_F(LayerWindowOutputTest, ACompositorThatReadsNothingForLongIsLostAndBreaksNoRule) {
  show();
  // Far more than a connection holds; some libraries keep all of it until it is read after all.
  for (int i = 0; i < 20'000 && losses.empty(); ++i) {
    window->close();
    window->orderBack();
    while (g_main_context_iteration(nullptr, FALSE) != 0) {
    }
    actor.runUntilIdle();
  }
  for (const auto& loss : losses) EXPECT_FALSE(loss.isRefusal) << loss.what;
}

}  // namespace
}  // namespace orvane::host::wayland
