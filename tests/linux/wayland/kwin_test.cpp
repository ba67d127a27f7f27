#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "linux/wayland/desk.h"
#include "linux/wayland/fake_kwin.h"

namespace orvane::host::wayland {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint32_t plasma527 = 3;
constexpr std::uint32_t plasma63 = 13;

// What is done otherwise on KWin than on other compositors.
class KWinTest : public Desk {
 protected:
  // Glass all over, in a window that is shown on the one output.
  void showGlass() {
    view->surface = Material{Color::srgb(0, 0, 0, 0.9)};
    show();
  }
  static constexpr PixelRect wholePanel{0, 0, 300, 100};
};

// ---- The name of a surface

TEST_F(KWinTest, IsToldTheNeutralNameBeforePlasma63) {
  const fakes::FakeKWin kwin(compositor, plasma527);
  show();
  EXPECT_EQ(surface().nameSpace, "org.orvane.Orvane");
}

TEST_F(KWinTest, IsToldTheBoardIsPartOfTheDesktopFromPlasma63On) {
  const fakes::FakeKWin kwin(compositor, plasma63);
  show();
  EXPECT_EQ(surface().nameSpace, "desktop");
  EXPECT_EQ(surface().layer, static_cast<std::uint32_t>(ZWLR_LAYER_SHELL_V1_LAYER_BOTTOM));
}

TEST_F(KWinTest, OtherCompositorsAreToldTheNeutralName) {
  show();
  EXPECT_EQ(surface().nameSpace, "org.orvane.Orvane");
}

// ---- Screens

TEST_F(KWinTest, OrdersTheScreens) {
  fakes::FakeKWin kwin(compositor, plasma527);
  compositor.addOutput({.name = "DP-1"});
  compositor.addOutput({.name = "DP-2", .x = 1280});
  kwin.tellOrder({"DP-2", "DP-1"});
  ASSERT_EQ(connect(), "");
  EXPECT_EQ(server->mainScreen()->frame.x, 1280);
}

TEST_F(KWinTest, TellsAChangedOrder) {
  fakes::FakeKWin kwin(compositor, plasma527);
  compositor.addOutput({.name = "DP-1"});
  compositor.addOutput({.name = "DP-2", .x = 1280});
  kwin.tellOrder({"DP-2", "DP-1"});
  ASSERT_EQ(connect(), "");
  int announced = 0;
  const auto observer = notifications.addObserver(
      NSApplicationDidChangeScreenParametersNotification, [&] { ++announced; });
  kwin.tellOrder({"DP-1", "DP-2"});
  settle();
  EXPECT_EQ(announced, 1);
  EXPECT_EQ(server->mainScreen()->frame.x, 0);
  kwin.tellOrder({"DP-1", "DP-2"});
  settle();
  EXPECT_EQ(announced, 1) << "the same once more is no change";
}

TEST_F(KWinTest, MirroredOutputsAreOneScreen) {
  fakes::FakeKWin kwin(compositor, plasma527);
  compositor.addOutput({.name = "DP-1"});
  auto& second = compositor.addOutput({.name = "DP-2", .width = 800, .height = 600});
  ASSERT_EQ(connect(), "");
  ASSERT_THAT(server->screens(), SizeIs(1));
  EXPECT_EQ(server->screens()[0].frame.width, 1280);
  compositor.changeOutput(second, {.name = "DP-2", .x = 1280, .width = 800, .height = 600});
  settle();
  EXPECT_THAT(server->screens(), SizeIs(2));
}

TEST_F(KWinTest, TheScreenOfMirroredOutputsIsTheFirstOfTheOrder) {
  fakes::FakeKWin kwin(compositor, plasma527);
  compositor.addOutput({.name = "DP-1"});
  compositor.addOutput({.name = "DP-2"});
  ASSERT_EQ(connect(), "");
  const auto first = server->mainScreen();
  kwin.tellOrder({"DP-2", "DP-1"});
  settle();
  EXPECT_THAT(server->screens(), SizeIs(1));
  EXPECT_NE(server->mainScreen()->identity, first->identity);
}

// ---- Blur

TEST_F(KWinTest, BlursBehindTheGlass) {
  fakes::FakeKWin kwin(compositor, plasma527);
  kwin.offerBlur();
  showGlass();
  EXPECT_THAT(surface().blurred, ElementsAre(wholePanel));
}

TEST_F(KWinTest, BlursNothingBehindOtherSurfaces) {
  fakes::FakeKWin kwin(compositor, plasma527);
  kwin.offerBlur();
  show();
  EXPECT_THAT(surface().blurred, IsEmpty());
}

TEST_F(KWinTest, TheBlurFollowsTheGlass) {
  fakes::FakeKWin kwin(compositor, plasma527);
  kwin.offerBlur();
  showGlass();
  view->panel.height = 60;
  tick();
  // The surface begins above the panel, where the digits reach past it.
  EXPECT_THAT(surface().blurred, ElementsAre(PixelRect{0, 4, 300, 60}));
  view->surface = Color::white();
  tick();
  EXPECT_THAT(surface().blurred, IsEmpty());
}

TEST_F(KWinTest, AsksForABlurOnlyOnce) {
  fakes::FakeKWin kwin(compositor, plasma527);
  kwin.offerBlur();
  view->panel.height = 40;  // too low for the digits, so that nothing changes
  showGlass();
  const int commits = surface().commits;
  tick(3);
  EXPECT_EQ(surface().commits, commits);
}

TEST_F(KWinTest, AnEffectThatIsSwitchedOnOrOffIsFollowed) {
  fakes::FakeKWin kwin(compositor, plasma527);
  view->panel.height = 40;
  showGlass();
  EXPECT_THAT(surface().blurred, IsEmpty());
  kwin.offerBlur();
  settle();
  tick();
  EXPECT_THAT(surface().blurred, ElementsAre(PixelRect{0, 0, 300, 40}));
  kwin.withdrawBlur();
  settle();
  tick();
  surface().blurred.clear();
  kwin.offerBlur();
  settle();
  tick();
  EXPECT_THAT(surface().blurred, ElementsAre(PixelRect{0, 0, 300, 40}));
}

}  // namespace
}  // namespace orvane::host::wayland
