#include "wallpaper/wallpaper_window_controller.h"

#include <gtest/gtest.h>

#include <limits>

#include "fakes/blank_view.h"
#include "fakes/manual_main_actor.h"
#include "fakes/memory_window_server.h"
#include "wallpaper/screen_id.h"

namespace orvane {
namespace {

using Mode = DashboardDisplayMode;
using Numbers = std::vector<int>;
using Operations = std::vector<std::string>;

constexpr Rect leftFrame{0, 0, 1920, 1080};
constexpr Rect middleFrame{1920, 0, 2560, 1440};
constexpr Rect rightFrame{4480, 0, 1280, 720};

class WallpaperWindowControllerTest : public testing::Test {
 protected:
  void attachThree() {
    server_.attach("left", leftFrame, 11);
    server_.attach("middle", middleFrame, 22);
    server_.attach("right", rightFrame, 33);
  }
  WallpaperWindowController& controller() {
    if (!controller_) {
      controller_ = WallpaperWindowController::createHosting(
          [this] {
            ++viewsMade_;
            return std::make_shared<fakes::BlankView>();
          },
          {server_, center_, actor_});
    }
    return *controller_;
  }
  void show(Mode mode, const std::string& selected = "") {
    controller().setDisplaySelection(mode, selected);
  }
  int primary() { return dynamic_cast<fakes::MemoryWindow&>(*controller().window()).number(); }
  std::shared_ptr<fakes::MemoryWindow> window(int number) { return server_.window(number); }
  // Screens changed: the controller hears of it, and acts in a turn of its own.
  void announceScreens() {
    center_.post(NSApplicationDidChangeScreenParametersNotification);
    actor_.runUntilIdle();
  }

  fakes::ManualMainActor actor_;
  NotificationCenter center_;
  fakes::MemoryWindowServer server_;
  int viewsMade_ = 0;
  std::shared_ptr<WallpaperWindowController> controller_;
};

TEST_F(WallpaperWindowControllerTest, CreationPlacesThePrimaryWindowOnTheMainScreen) {
  attachThree();
  controller();
  EXPECT_EQ(server_.operations, (Operations{"window 1: made", "window 1: content",
                                            "window 1: frame, display", "window 1: back"}));
  EXPECT_EQ(window(1)->frame(), leftFrame);
  EXPECT_EQ(server_.lastStyleMask, 32768u);
  EXPECT_EQ(server_.lastBacking, NSBackingStoreType::buffered);
  EXPECT_FALSE(server_.lastDefer);
  EXPECT_EQ(primary(), 1);
}

TEST_F(WallpaperWindowControllerTest, ThePrimaryWindowWithoutScreensIsProvisional) {
  controller();
  EXPECT_EQ(server_.operations, (Operations{"window 1: made", "window 1: content"}));
  const auto& properties = window(1)->properties;
  EXPECT_EQ(window(1)->frame(), Rect{});
  EXPECT_EQ(properties.level, 2);
  EXPECT_EQ(properties.collectionBehavior, 0x51u);
  EXPECT_FALSE(properties.isReleasedWhenClosed);
  EXPECT_TRUE(properties.ignoresMouseEvents);
  EXPECT_TRUE(server_.visibleWindows().empty());
}

TEST_F(WallpaperWindowControllerTest, APlacedWindowIsUnobtrusiveAndAtDesktopLevel) {
  attachThree();
  controller();
  NSWindowProperties expected;
  expected.isReleasedWhenClosed = false;
  expected.titleVisibility = NSWindowTitleVisibility::hidden;
  expected.titlebarAppearsTransparent = true;
  expected.backgroundColor = Color::clear();
  expected.isOpaque = false;
  expected.hasShadow = false;
  expected.ignoresMouseEvents = true;
  expected.acceptsMouseMovedEvents = false;
  expected.animationBehavior = NSWindowAnimationBehavior::none;
  expected.hidesOnDeactivate = false;
  expected.canHide = false;
  expected.collectionBehavior = 0x51;
  expected.level = -2147483623;
  EXPECT_EQ(window(1)->properties, expected);
}

TEST_F(WallpaperWindowControllerTest, TheContentFillsItsWindow) {
  attachThree();
  show(Mode::all);
  const auto& content = *window(2)->contentView();
  EXPECT_EQ(content.frame, (Rect{0, 0, 2560, 1440}));
  EXPECT_EQ(content.autoresizingMask, 0x12u);
  EXPECT_TRUE(content.translatesAutoresizingMaskIntoConstraints);
  EXPECT_TRUE(content.wantsLayer);
  EXPECT_EQ(content.layerBackgroundColor, Color::clear());
  EXPECT_NE(content.rootView, window(1)->contentView()->rootView);
}

TEST_F(WallpaperWindowControllerTest, TheLevelIsTheLowerOfDesktopAndJustBelowTheBackstop) {
  attachThree();
  server_.levels = {{CGWindowLevelKey::desktopWindow, 5}, {CGWindowLevelKey::backstopMenu, 5}};
  controller();
  EXPECT_EQ(window(1)->properties.level, 4);
  server_.levels[CGWindowLevelKey::backstopMenu] = std::numeric_limits<std::int32_t>::min();
  controller().syncToScreens();
  EXPECT_EQ(window(1)->properties.level, -2147483649LL);
}

TEST_F(WallpaperWindowControllerTest, JoiningAllSpacesChangesTheBehaviourAndNotTheLevel) {
  attachThree();
  controller().setJoinsAllSpaces(false);
  EXPECT_EQ(window(1)->properties.collectionBehavior, 0x50u);
  const auto level = window(1)->properties.level;
  controller().setJoinsAllSpaces(true);
  EXPECT_EQ(window(1)->properties.collectionBehavior, 0x51u);
  EXPECT_EQ(window(1)->properties.level, level);
}

TEST_F(WallpaperWindowControllerTest, AllShowsAWindowOnEachScreenAndUnpluggingClosesExactlyOne) {
  attachThree();
  show(Mode::all);
  EXPECT_EQ(server_.visibleWindows(), (Numbers{1, 2, 3}));
  EXPECT_EQ(window(2)->frame(), middleFrame);
  EXPECT_EQ(window(3)->frame(), rightFrame);
  EXPECT_EQ(viewsMade_, 3);
  const auto first = window(1);
  const auto third = window(3);
  server_.operations.clear();
  server_.remove("middle");
  announceScreens();
  EXPECT_EQ(server_.operations,
            (Operations{"window 2: close", "window 2: released", "window 1: frame, display",
                        "window 1: back", "window 3: frame, display", "window 3: back"}));
  EXPECT_EQ(window(1), first);
  EXPECT_EQ(window(3), third);
  EXPECT_EQ(viewsMade_, 3);
}

TEST_F(WallpaperWindowControllerTest, FromAllToMainKeepsTheMainScreensWindow) {
  attachThree();
  server_.mainIdentity = "middle";
  show(Mode::all);
  // Created on the main screen, then in the desktop's order around it.
  const auto kept = window(1);
  EXPECT_EQ(kept->frame(), middleFrame);
  EXPECT_EQ(primary(), 2);
  show(Mode::main);
  EXPECT_EQ(server_.visibleWindows(), Numbers{1});
  EXPECT_EQ(window(1), kept);
  EXPECT_EQ(primary(), 1);
}

TEST_F(WallpaperWindowControllerTest, AChosenScreenThatIsNotThereFallsBackToTheMainScreen) {
  attachThree();
  show(Mode::selected, "44");
  EXPECT_EQ(server_.visibleWindows(), Numbers{1});
  EXPECT_EQ(window(1)->frame(), leftFrame);
  show(Mode::selected, "");
  EXPECT_EQ(window(1)->frame(), leftFrame);
}

TEST_F(WallpaperWindowControllerTest, AttachingTheChosenScreenMovesTheSameWindowThere) {
  server_.attach("left", leftFrame, 11);
  show(Mode::selected, "22");
  const auto moved = window(1);
  server_.operations.clear();
  server_.attach("middle", middleFrame, 22);
  announceScreens();
  EXPECT_EQ(server_.operations,
            (Operations{"window 1: close", "window 1: frame, display", "window 1: back"}));
  EXPECT_EQ(window(1), moved);
  EXPECT_EQ(moved->frame(), middleFrame);
  EXPECT_EQ(server_.made, 1);
}

TEST_F(WallpaperWindowControllerTest, OneTargetExchangedForAnotherReusesThePrimaryWindow) {
  attachThree();
  show(Mode::selected, "33");
  show(Mode::selected, "22");
  EXPECT_EQ(server_.made, 1);
  EXPECT_EQ(window(1)->frame(), middleFrame);
}

TEST_F(WallpaperWindowControllerTest, WhileWindowsStandNewScreensGetNewWindows) {
  attachThree();
  show(Mode::selected, "33");
  show(Mode::all);
  EXPECT_EQ(server_.made, 3);
  // Window 1 stayed on the right; the first target's window is another and becomes primary.
  EXPECT_EQ(window(1)->frame(), rightFrame);
  EXPECT_EQ(window(2)->frame(), leftFrame);
  EXPECT_EQ(primary(), 2);
}

TEST_F(WallpaperWindowControllerTest, WithoutAMainScreenTheFirstOneIsTaken) {
  attachThree();
  server_.mainIdentity = "none of them";
  controller();
  EXPECT_EQ(window(1)->frame(), leftFrame);
}

TEST_F(WallpaperWindowControllerTest, LosingEveryScreenLeavesTheWindowsAsTheyWere) {
  attachThree();
  show(Mode::all);
  server_.attached.clear();
  server_.operations.clear();
  announceScreens();
  EXPECT_TRUE(server_.operations.empty());
  EXPECT_EQ(server_.visibleWindows(), (Numbers{1, 2, 3}));
  EXPECT_TRUE(availableDisplays(server_).empty());
}

TEST_F(WallpaperWindowControllerTest, AScreenWithoutANumberThatMovesIsANewScreen) {
  server_.attach("left", leftFrame, 11);
  server_.attach("odd", {1920, 0, 800, 600}, std::nullopt);
  show(Mode::all);
  server_.attached[1].frame = {1920, 100, 800, 600};
  announceScreens();
  EXPECT_EQ(server_.visibleWindows(), (Numbers{1, 3}));
  EXPECT_EQ(window(3)->frame(), (Rect{1920, 100, 800, 600}));
}

TEST_F(WallpaperWindowControllerTest, AScreenWithANumberThatMovesKeepsItsWindow) {
  attachThree();
  show(Mode::all);
  const auto kept = window(2);
  server_.attached[1].frame = {0, 1080, 1920, 1080};
  announceScreens();
  EXPECT_EQ(window(2), kept);
  EXPECT_EQ(kept->frame(), (Rect{0, 1080, 1920, 1080}));
  EXPECT_EQ(server_.made, 3);
}

TEST_F(WallpaperWindowControllerTest, PlacementFollowsTheNotificationInATurnOfItsOwn) {
  attachThree();
  controller();
  server_.operations.clear();
  center_.post(NSApplicationDidChangeScreenParametersNotification);
  EXPECT_TRUE(server_.operations.empty());
  actor_.runUntilIdle();
  EXPECT_EQ(server_.operations, (Operations{"window 1: frame, display", "window 1: back"}));
}

TEST_F(WallpaperWindowControllerTest, APendingPlacementDoesNothingOnceTheControllerIsGone) {
  attachThree();
  controller();
  center_.post(NSApplicationDidChangeScreenParametersNotification);
  controller_.reset();
  server_.operations.clear();
  actor_.runUntilIdle();
  center_.post(NSApplicationDidChangeScreenParametersNotification);
  actor_.runUntilIdle();
  EXPECT_TRUE(server_.operations.empty());
}

TEST_F(WallpaperWindowControllerTest, DestroyingTheControllerClosesNoWindowExplicitly) {
  attachThree();
  show(Mode::all);
  server_.operations.clear();
  controller_.reset();
  for (const auto& operation : server_.operations) {
    EXPECT_EQ(operation.find("close"), std::string::npos) << operation;
  }
}

TEST_F(WallpaperWindowControllerTest, PlacingAgainChangesNothing) {
  attachThree();
  show(Mode::all);
  const auto visible = server_.visibleWindows();
  const auto properties = window(2)->properties;
  for (int run = 0; run < 5; ++run) controller().syncToScreens();
  EXPECT_EQ(server_.visibleWindows(), visible);
  EXPECT_EQ(window(2)->properties, properties);
  EXPECT_EQ(server_.made, 3);
  EXPECT_EQ(viewsMade_, 3);
}

}  // namespace
}  // namespace orvane
