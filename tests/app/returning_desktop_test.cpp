#include "app/returning_desktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/app_delegate.h"
#include "dashboard/wallpaper_dashboard_view.h"
#include "fakes/blank_view.h"
#include "fakes/fixed_calendar.h"
#include "fakes/manual_main_actor.h"
#include "fakes/memory_app_service.h"
#include "fakes/memory_event_store.h"
#include "fakes/memory_shell.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/memory_window_server.h"
#include "fakes/plain_locale.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::SizeIs;

const Rect kFrame{0, 0, 1920, 1080};

// Desktops that come and go: each opening makes a new one with the screens of the time.
class ReturningDesktopTest : public testing::Test {
 protected:
  struct Screen {
    std::string identity;
    Rect frame;
    std::int64_t number;
  };

  ReturningDesktop::Opened openNext(const ReturningDesktop::Attempt& attempt) {
    ++openings_;
    isInVain_ = attempt.isInVain;
    if (hangsUp_) attempt.onLost({"The display hung up", true});
    if (!isThere_) return {nullptr, {"There is none.", "Nor is there another."}};
    auto server = std::make_unique<fakes::MemoryWindowServer>();
    for (const auto& screen : screens_) {
      server->attach(screen.identity, screen.frame, screen.number);
    }
    server->levels[CGWindowLevelKey::desktopWindow] = level_;
    current_ = server.get();
    lose_ = attempt.onLost;
    return {std::move(server), {}};
  }
  void open() { ASSERT_THAT(desktop_.open(5s), SizeIs(0)); }
  void lose(bool isRefusal = false) {
    current_ = nullptr;
    isThere_ = false;
    lose_({"The display is lost", isRefusal});
    actor_.runUntilIdle();
  }
  void comeBack() {
    isThere_ = true;
    actor_.advance(4s);
    ASSERT_NE(current_, nullptr);
  }
  std::shared_ptr<NSWindow> makeWindow(Rect frame = kFrame) {
    auto window = desktop_.makeWindow(frame, NSWindowStyleMask::fullSizeContentView,
                                      NSBackingStoreType::buffered, false);
    window->setContentView(std::make_unique<NSHostingView>(std::make_shared<fakes::BlankView>()));
    return window;
  }

  fakes::ManualMainActor actor_;
  NotificationCenter center_;
  std::vector<Screen> screens_ = {{"left", kFrame, 11}};
  std::int32_t level_ = -100;
  bool isThere_ = true;
  bool hangsUp_ = false;  // while it is opened
  int openings_ = 0;
  fakes::MemoryWindowServer* current_ = nullptr;
  std::function<void(const DesktopLoss&)> lose_;
  std::function<bool()> isInVain_;
  bool sessionEnded_ = false;
  std::vector<std::string> said_;
  ReturningDesktop desktop_{
      {actor_, center_, [this](const auto& attempt) { return openNext(attempt); },
       [this] { return sessionEnded_; }, [this](const auto& why) { said_.push_back(why); }}};
};

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

// The whole program on it.
class ProgramOnReturningDesktopTest : public ReturningDesktopTest {
 protected:
  void launch() {
    open();
    delegate_ =
        AppDelegate::create({&shell_.application, shell_.statusBar, shell_.formWindows,
                             shell_.hotKeys, shell_.scripts, defaults_, service_, desktop_, center_,
                             actor_, calendar_, locale_, [this] { return store_; }});
    delegate_->applicationDidFinishLaunching();
    actor_.advance(2s);
  }
  WallpaperDashboardView& board(int window) {
    return dynamic_cast<WallpaperDashboardView&>(
        *current_->window(window)->contentView()->rootView);
  }

  fakes::FixedCalendar calendar_{[this] { return actor_.now(); }};
  fakes::PlainLocale locale_;
  fakes::MemoryUserDefaults defaults_;
  fakes::MemoryAppService service_;
  std::vector<std::string> log_;
  fakes::MemoryShell shell_{log_};
  std::shared_ptr<fakes::MemoryEventStore> store_ =
      std::make_shared<fakes::MemoryEventStore>(actor_);
  std::shared_ptr<AppDelegate> delegate_;
};

TEST_F(ProgramOnReturningDesktopTest, ReturnsWithTheSameAgendaAndWhatChangedMeanwhile) {
  launch();
  const auto manager = delegate_->taskManager();
  const auto* view = &board(1);
  lose();
  const Date start = actor_.now() + 600;
  manager->events = std::vector<DashboardEvent>{{"e", "Talk", "Work", "work", start, start, false}};
  comeBack();
  EXPECT_EQ(delegate_->taskManager(), manager);
  ASSERT_THAT(current_->visibleWindows(), ElementsAre(1));
  EXPECT_EQ(&board(1), view);
  EXPECT_EQ(board(1).currentNextDeadline(actor_.now())->id, "event-e");
  EXPECT_EQ(current_->window(1)->properties.level, -100);
  EXPECT_EQ(current_->window(1)->frame(), kFrame);
}

TEST_F(ProgramOnReturningDesktopTest, StandsOnTheScreensOfTheNewDesktopAlone) {
  screens_.push_back({"right", {1920, 0, 1280, 720}, 22});
  defaults_.values["DashboardSettings.displayMode"] = std::string("all");
  launch();
  EXPECT_THAT(current_->visibleWindows(), SizeIs(2));
  lose();
  screens_ = {{"other", {0, 0, 800, 600}, 33}};
  level_ = -5;
  comeBack();
  ASSERT_THAT(current_->visibleWindows(), SizeIs(1));
  const auto window = current_->window(current_->visibleWindows()[0]);
  EXPECT_EQ(window->frame(), (Rect{0, 0, 800, 600}));
  EXPECT_EQ(window->properties.level, -20 - 1);
}

TEST_F(ProgramOnReturningDesktopTest, SettingsThatChangeMeanwhileHoldOnTheNewDesktop) {
  screens_.push_back({"right", {1920, 0, 1280, 720}, 22});
  launch();
  lose();
  delegate_->settings()->selectedDisplayID = "22";
  delegate_->settings()->displayMode = DashboardDisplayMode::selected;
  delegate_->settings()->showOnAllSpaces = false;
  comeBack();
  ASSERT_THAT(current_->visibleWindows(), SizeIs(1));
  const auto window = current_->window(current_->visibleWindows()[0]);
  EXPECT_EQ(window->frame(), (Rect{1920, 0, 1280, 720}));
  EXPECT_EQ(window->properties.collectionBehavior, 0x50u);
}

TEST_F(ProgramOnReturningDesktopTest, ADesktopThatReturnsWithoutScreensGetsTheBoardWithItsFirst) {
  launch();
  lose();
  const auto screens = std::exchange(screens_, {});
  comeBack();
  EXPECT_THAT(desktop_.screens(), SizeIs(0));
  current_->attach("late", {0, 0, 1024, 768}, 44);
  center_.post(NSApplicationDidChangeScreenParametersNotification);
  actor_.runUntilIdle();
  ASSERT_THAT(current_->visibleWindows(), SizeIs(1));
  EXPECT_EQ(current_->window(current_->visibleWindows()[0])->frame(), (Rect{0, 0, 1024, 768}));
}

TEST_F(ProgramOnReturningDesktopTest, EndsWhileItWaits) {
  launch();
  lose();
  delegate_.reset();
  comeBack();
  EXPECT_EQ(current_->made, 0);
}

}  // namespace
}  // namespace orvane
