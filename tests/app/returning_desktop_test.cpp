#include "app/returning_desktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/returning_desktop_fixture.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::SizeIs;

TEST_F(ReturningDesktopTest, IsTheDesktopThatIsThere) {
  open();
  EXPECT_EQ(desktop_.screens(), current_->screens());
  EXPECT_EQ(desktop_.mainScreen(), current_->mainScreen());
  const auto window = makeWindow();
  window->properties.level = 7;
  window->setFrame({0, 0, 100, 100}, true);
  window->orderBack();
  EXPECT_EQ(current_->window(1)->frame(), (Rect{0, 0, 100, 100}));
  EXPECT_EQ(current_->window(1)->properties, window->properties);
  EXPECT_EQ(current_->window(1)->contentView()->rootView, window->contentView()->rootView);
  EXPECT_EQ(current_->lastStyleMask, NSWindowStyleMask::fullSizeContentView);
  EXPECT_EQ(current_->lastBacking, NSBackingStoreType::buffered);
  EXPECT_FALSE(current_->lastDefer);
  window->close();
  EXPECT_THAT(current_->visibleWindows(), SizeIs(0));
}

TEST_F(ReturningDesktopTest, ThatIsNotThereAtFirstIsNotWaitedFor) {
  isThere_ = false;
  EXPECT_THAT(desktop_.open(5s), ElementsAre("There is none.", "Nor is there another."));
  actor_.advance(1h);
  EXPECT_EQ(openings_, 1);
}

TEST_F(ReturningDesktopTest, WhileItIsAwayThereAreNoScreensAndWindowsKeepWhatTheyAreTold) {
  open();
  const auto shown = makeWindow();
  shown->orderBack();
  const auto closed = makeWindow();
  closed->orderBack();
  lose();
  EXPECT_THAT(desktop_.screens(), SizeIs(0));
  EXPECT_EQ(desktop_.mainScreen(), std::nullopt);
  EXPECT_EQ(desktop_.windowLevelForKey(CGWindowLevelKey::desktopWindow), -100);
  closed->close();
  shown->setFrame({5, 5, 50, 50}, true);
  const auto made = makeWindow({1, 1, 10, 10});
  made->orderBack();
  comeBack();
  EXPECT_EQ(current_->made, 2);
  EXPECT_EQ(current_->window(1)->frame(), (Rect{5, 5, 50, 50}));
  EXPECT_EQ(current_->window(2)->frame(), (Rect{1, 1, 10, 10}));
  EXPECT_THAT(current_->visibleWindows(), ElementsAre(1, 2));
  EXPECT_EQ(current_->window(2)->contentView()->rootView, made->contentView()->rootView);
}

TEST_F(ReturningDesktopTest, WindowsThatAreGoneAreNotBroughtBack) {
  open();
  auto window = makeWindow();
  window->orderBack();
  lose();
  window.reset();
  comeBack();
  EXPECT_EQ(current_->made, 0);
}

TEST_F(ReturningDesktopTest, TheLossAndTheReturnAreChangesOfTheScreens) {
  open();
  std::vector<std::size_t> counts;
  const auto observer = center_.addObserver(NSApplicationDidChangeScreenParametersNotification,
                                            [&] { counts.push_back(desktop_.screens().size()); });
  lose();
  EXPECT_THAT(counts, ElementsAre(0));
  screens_.push_back({"right", {1920, 0, 800, 600}, 22});
  comeBack();
  EXPECT_THAT(counts, ElementsAre(0, 2));
}

TEST_F(ReturningDesktopTest, WhoFollowsTheScreensPlacesWindowsBeforeTheyComeBack) {
  open();
  const auto window = makeWindow();
  window->orderBack();
  lose();
  const auto observer =
      center_.addObserver(NSApplicationDidChangeScreenParametersNotification, [&] {
        actor_.post([&] { window->setFrame({3, 3, 30, 30}, true); });
      });
  comeBack();
  EXPECT_THAT(current_->operations, ElementsAre("window 1: made", "window 1: content",
                                                "window 1: back", "window 1: frame, display"));
  EXPECT_EQ(current_->window(1)->frame(), (Rect{3, 3, 30, 30}));
}

TEST_F(ReturningDesktopTest, AnotherKindOfDesktopHasItsOwnLevels) {
  open();
  lose();
  level_ = -7;
  comeBack();
  EXPECT_EQ(desktop_.windowLevelForKey(CGWindowLevelKey::desktopWindow), -7);
  EXPECT_EQ(desktop_.windowLevelForKey(CGWindowLevelKey::backstopMenu), -20);
}

TEST_F(ReturningDesktopTest, LostAgainWhileItReturnsItReturnsAgain) {
  open();
  const auto window = makeWindow();
  window->orderBack();
  lose();
  isThere_ = true;
  actor_.advance(250ms - 1ns);
  const auto opened = openings_;
  const auto observer =
      center_.addObserver(NSApplicationDidChangeScreenParametersNotification, [&] {
        if (openings_ == opened + 1 && current_) lose_({"The display is lost", false});
      });
  actor_.advance(1ns);
  current_ = nullptr;
  actor_.advance(4s);
  EXPECT_EQ(openings_, opened + 2);
  ASSERT_NE(current_, nullptr);
  EXPECT_THAT(current_->visibleWindows(), ElementsAre(1));
}

TEST_F(ReturningDesktopTest, NothingIsHeardOfAConnectionThatIsNoMore) {
  open();
  const auto stale = lose_;
  lose();
  comeBack();
  stale({"The display is lost", true});
  actor_.runUntilIdle();
  EXPECT_THAT(desktop_.screens(), SizeIs(1));
}

TEST_F(ReturningDesktopTest, ALossIsHeardOnceHoweverOftenItIsTold) {
  open();
  lose_({"The display is lost", true});
  lose_({"The display is lost", true});
  lose(true);
  EXPECT_THAT(said_, SizeIs(0)) << "three refusals would be the end";
  comeBack();
}

TEST_F(ReturningDesktopTest, AnOpeningThatFailsAndTellsOfALossIsOnlyAFailure) {
  open();
  lose();
  hangsUp_ = true;
  const auto before = openings_;
  actor_.advance(59s);
  EXPECT_GT(openings_, before + 10);
  EXPECT_THAT(said_, SizeIs(0));
}

TEST_F(ReturningDesktopTest, WhatDoesNotComeBackIsToldInOneSentence) {
  open();
  const auto window = makeWindow();
  window->orderBack();
  lose();
  actor_.advance(59s);
  EXPECT_THAT(said_, SizeIs(0));
  actor_.advance(1s);
  EXPECT_THAT(said_, ElementsAre("The display is lost, and no desktop has come back within 60 "
                                 "seconds."));
}

TEST_F(ReturningDesktopTest, TheEndOfTheSessionIsToldInOneSentence) {
  open();
  lose();
  sessionEnded_ = true;
  actor_.advance(250ms);
  EXPECT_THAT(said_, ElementsAre("The display is lost, and the session has ended."));
  actor_.advance(1h);
  EXPECT_THAT(said_, SizeIs(1));
}

TEST_F(ReturningDesktopTest, AnOpeningIsToldWhenThereIsNoMoreUseInIt) {
  open();
  lose();
  actor_.advance(250ms);
  EXPECT_FALSE(isInVain_());
  sessionEnded_ = true;
  EXPECT_TRUE(isInVain_());
}

TEST_F(ReturningDesktopTest, ADesktopThatRefusesUsIsLeftAlone) {
  open();
  lose(true);
  comeBack();
  lose(true);
  comeBack();
  lose(true);
  EXPECT_THAT(said_, ElementsAre("The display is lost each time, and it is left at that."));
}

TEST_F(ReturningDesktopTest, AHundredLossesLeaveNoTimersAndNoWindows) {
  open();
  const auto window = makeWindow();
  window->orderBack();
  for (int loss = 0; loss < 100; ++loss) {
    const auto gone = std::weak_ptr(current_->window(1));
    lose();
    EXPECT_TRUE(gone.expired()) << loss;
    comeBack();
    EXPECT_EQ(current_->made, 1) << loss;
    EXPECT_EQ(actor_.pendingTimers(), 1u) << "the one that sees it settle";
  }
}

}  // namespace
}  // namespace orvane
