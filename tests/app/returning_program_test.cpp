// The whole program on a desktop that goes and comes back.

#include "app/app_delegate.h"
#include "app/returning_desktop_fixture.h"
#include "dashboard/wallpaper_dashboard_view.h"
#include "fakes/fixed_calendar.h"
#include "fakes/memory_app_service.h"
#include "fakes/memory_event_store.h"
#include "fakes/memory_shell.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/plain_locale.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::SizeIs;

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
