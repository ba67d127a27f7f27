#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "linux/wayland/desk.h"

namespace orvane::host::wayland {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

class WaylandScreensTest : public Desk {
 protected:
  std::string connectAndCount() {
    observer_ = notifications.addObserver(NSApplicationDidChangeScreenParametersNotification,
                                          [this] { ++announced; });
    auto failure = connect();
    announced = 0;
    return failure;
  }
  int announced = 0;

 private:
  Subscription observer_;
};

class WaylandOffersTest : public testing::Test {
 protected:
  static std::string connectTo(fakes::FakeCompositor& compositor) {
    fakes::ManualMainActor actor;
    ManualSchedule schedule;
    NotificationCenter notifications;
    const fakes::CellMeasurer measurer;
    desktop::BlockPainter painter;
    std::string failure;
    compositor.serveDuring([&] {
      failure = makeWaylandDesktop({actor, schedule, notifications, measurer, painter, {}}).failure;
    });
    return failure;
  }
};

TEST_F(WaylandScreensTest, AreListedInTheOrderOfTheirAnnouncement) {
  compositor.addOutput({.name = "DP-2", .x = 1280});
  compositor.addOutput({.name = "DP-1"});
  ASSERT_EQ(connectAndCount(), "");
  const auto screens = server->screens();
  ASSERT_THAT(screens, SizeIs(2));
  EXPECT_EQ(screens[0].frame, (Rect{1280, 0, 1280, 720}));
  EXPECT_EQ(screens[1].frame, (Rect{0, 0, 1280, 720}));
  EXPECT_EQ(screens[1].visibleFrame, screens[1].frame);
  EXPECT_NE(screens[0].identity, screens[1].identity);
  EXPECT_EQ(server->mainScreen(), screens[1]);
}

TEST_F(WaylandScreensTest, AreEqualInSuccessiveAnswers) {
  compositor.addOutput({.name = "DP-1"});
  ASSERT_EQ(connectAndCount(), "");
  EXPECT_EQ(server->screens(), server->screens());
}

TEST_F(WaylandScreensTest, NoneIsAStateLikeAnyOther) {
  ASSERT_EQ(connectAndCount(), "");
  EXPECT_THAT(server->screens(), SizeIs(0));
  EXPECT_EQ(server->mainScreen(), std::nullopt);
  compositor.addOutput({.name = "DP-1"});
  settle();
  EXPECT_THAT(server->screens(), SizeIs(1));
  EXPECT_EQ(announced, 1);
}

TEST_F(WaylandScreensTest, ABurstOfChangesIsAnnouncedOnce) {
  auto& first = compositor.addOutput({.name = "DP-1"});
  auto& second = compositor.addOutput({.name = "DP-2", .x = 1280});
  ASSERT_EQ(connectAndCount(), "");
  compositor.removeOutput(second);
  compositor.changeOutput(first, {.name = "DP-1", .width = 1920, .height = 1080});
  settle();
  EXPECT_EQ(announced, 1);
  ASSERT_THAT(server->screens(), SizeIs(1));
  EXPECT_EQ(server->screens()[0].frame, (Rect{0, 0, 1920, 1080}));
}

TEST_F(WaylandScreensTest, ADescriptionThatChangesNothingIsNotAnnounced) {
  auto& output = compositor.addOutput({.name = "DP-1"});
  ASSERT_EQ(connectAndCount(), "");
  compositor.changeOutput(output, {.name = "DP-1"});
  settle();
  EXPECT_EQ(announced, 0);
}

TEST_F(WaylandScreensTest, ACoupleOfOutputsThatVanishBeforeTheyAreAskedForIsSurvived) {
  compositor.addOutput({.name = "DP-1"});
  ASSERT_EQ(connectAndCount(), "");
  compositor.removeOutput(compositor.addOutput({.name = "DP-2"}));
  compositor.removeOutput(compositor.addOutput({.name = "DP-3"}));
  settle();
  EXPECT_THAT(losses, SizeIs(0));
  EXPECT_EQ(announced, 0);
  EXPECT_THAT(server->screens(), SizeIs(1));
}

TEST_F(WaylandScreensTest, AnOutputWithoutASizeIsNoScreen) {
  compositor.addOutput({.name = "DP-1", .width = 0, .height = 0});
  ASSERT_EQ(connectAndCount(), "");
  EXPECT_THAT(server->screens(), SizeIs(0));
}

TEST_F(WaylandScreensTest, KeepTheirNumberWhenTheyComeBack) {
  auto& output = compositor.addOutput({.name = "DP-1"});
  ASSERT_EQ(connectAndCount(), "");
  const auto before = server->screens()[0];
  compositor.removeOutput(output);
  settle();
  compositor.addOutput({.name = "DP-1", .x = 640});
  settle();
  const auto after = server->screens()[0];
  EXPECT_EQ(after.screenNumber, before.screenNumber);
  EXPECT_NE(after.identity, before.identity);
}

TEST_F(WaylandOffersTest, NoLayerShellIsAReasonNotToUseIt) {
  fakes::FakeCompositor compositor({.layerShell = false});
  EXPECT_EQ(connectTo(compositor), "The Wayland compositor has no layer shell.");
}

TEST_F(WaylandOffersTest, AllElseMayBeMissing) {
  fakes::FakeCompositor compositor({.fractionalScale = false, .xdgOutput = false});
  compositor.addOutput({.name = "DP-1"});
  EXPECT_EQ(connectTo(compositor), "");
}

}  // namespace
}  // namespace orvane::host::wayland
