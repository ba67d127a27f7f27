#include "dashboard/wallpaper_dashboard_view.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "dashboard/formatting.h"
#include "fakes/cell_measurer.h"
#include "fakes/fixed_calendar.h"
#include "fakes/manual_main_actor.h"
#include "fakes/memory_app_service.h"
#include "fakes/memory_event_store.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/plain_locale.h"
#include "view/scene.h"

namespace orvane {
namespace {

class WallpaperDashboardViewTest : public testing::Test {
 protected:
  static Date at(int day, int hour, int minute = 0, int second = 0) {
    return {fakes::secondsOf({2026, 11, day, hour, minute, second})};
  }
  static DashboardEvent event(const std::string& title, Date start, bool isAllDay = false) {
    return {title, title, "Work", "work", start, start + 3600, isAllDay};
  }
  static DashboardReminder reminder(const std::string& title, std::optional<Date> due) {
    return {title, title, "Home", "home", due, 0};
  }

  [[nodiscard]] DisplayList shown(Date now, Size size = {1920, 1080}) {
    return layout(view->body(now, size), size, measurer).list;
  }
  [[nodiscard]] std::vector<NamedFrame> frames(Size size) {
    return layout(view->body(now, size), size, measurer).frames;
  }
  [[nodiscard]] Rect frameOf(const std::string& name, Size size) {
    for (const auto& frame : frames(size)) {
      if (frame.name == name) return frame.frame;
    }
    ADD_FAILURE() << "no frame named " << name;
    return {};
  }
  static const DisplayItem* find(const DisplayList& list, const std::string& wanted) {
    for (const auto& item : list) {
      const auto* text = std::get_if<TextItem>(&item.content);
      if (text && text->text == wanted) return &item;
    }
    return nullptr;
  }
  [[nodiscard]] bool shows(const std::string& wanted, Date instant) {
    return find(shown(instant), wanted) != nullptr;
  }

  Date now = at(20, 9, 41);
  fakes::ManualMainActor actor{now};
  NotificationCenter center;
  fakes::FixedCalendar calendar{[this] { return now; }};
  fakes::PlainLocale locale;
  fakes::MemoryUserDefaults defaults;
  fakes::MemoryAppService service;
  fakes::CellMeasurer measurer;
  std::shared_ptr<DashboardSettings> settings =
      std::make_shared<DashboardSettings>(defaults, service);
  std::shared_ptr<TaskManager> manager =
      TaskManager::create(settings, std::make_shared<fakes::MemoryEventStore>(actor),
                          {actor, center, calendar, locale});
  std::shared_ptr<WallpaperDashboardView> view = std::make_shared<WallpaperDashboardView>(
      manager, settings, DashboardEnvironment{locale, calendar, [this] { return now; }});
};

TEST_F(WallpaperDashboardViewTest, ColumnsStandWhereTheWindowsSizePutsThem) {
  EXPECT_EQ(frameOf("leftColumn", {1920, 1080}).origin(), (Point{72, 64}));
  EXPECT_EQ(frameOf("leftColumn", {1920, 1080}).width, 420);
  EXPECT_EQ(frameOf("rightColumn", {1920, 1080}).origin(), (Point{72 + 420 + 16, 64}));
  EXPECT_EQ(frameOf("rightColumn", {1920, 1080}).width, 520);
  EXPECT_EQ(frameOf("leftColumn", {1599, 999}).origin(), (Point{36, 42}));
  EXPECT_NEAR(frameOf("leftColumn", {1440, 900}).width, 403.2, 0.05);
  EXPECT_NEAR(frameOf("rightColumn", {1024, 768}).width, 389.12, 0.05);
}

TEST_F(WallpaperDashboardViewTest, CardsFillTheirColumnsAndStand16Apart) {
  const Size size{1920, 1080};
  const Rect date = frameOf("DateCard", size);
  const Rect nextUp = frameOf("NextUpCard", size);
  const Rect events = frameOf("EventsCard", size);
  const Rect reminders = frameOf("RemindersCard", size);
  EXPECT_EQ(date.origin(), (Point{72, 64}));
  EXPECT_EQ(date.width, 420);
  EXPECT_EQ(nextUp.x, 72);
  EXPECT_EQ(nextUp.width, 420);
  EXPECT_NEAR(nextUp.y, date.bottom() + 16, 1e-9);
  EXPECT_EQ(events.origin(), (Point{508, 64}));
  EXPECT_EQ(events.width, 520);
  EXPECT_NEAR(reminders.y, events.bottom() + 16, 1e-9);
}

TEST_F(WallpaperDashboardViewTest, ABoardLargerThanItsWindowKeepsItsCorner) {
  for (const Size size : {Size{640, 200}, Size{50, 20}, Size{1, 1}, Size{0, 0}}) {
    EXPECT_EQ(frameOf("leftColumn", size).origin(), (Point{36, 42}));
    EXPECT_EQ(frameOf("leftColumn", size).width, 315);
    EXPECT_EQ(frameOf("rightColumn", size).origin(), (Point{36 + 315 + 16, 42}));
    EXPECT_EQ(frameOf("rightColumn", size).width, 360);
    EXPECT_EQ(frameOf("RemindersCard", size).size(), frameOf("RemindersCard", {800, 900}).size());
  }
}

TEST_F(WallpaperDashboardViewTest, EventsAreTodaysOrLater) {
  manager->events = {event("Yesterday", at(19, 23)), event("Earlier", at(20, 8)),
                     event("Tomorrow", at(21, 9))};
  EXPECT_TRUE(shows("Earlier", now));
  EXPECT_FALSE(shows("Yesterday", now));
  EXPECT_TRUE(shows("1", now));
  manager->events = {event("Yesterday", at(19, 23)), event("Tomorrow", at(21, 9))};
  EXPECT_TRUE(shows("Next: Tomorrow Nov 21, 2026 at 9:00 AM", now));
}

TEST_F(WallpaperDashboardViewTest, FocusModeHidesTheRightColumnAndKeepsItsPlace) {
  manager->events = {event("Standup", at(20, 10))};
  manager->reminders = {reminder("Call", std::nullopt)};
  const Rect leftBefore = frameOf("leftColumn", {1920, 1080});
  const Rect rightBefore = frameOf("rightColumn", {1920, 1080});
  settings->focusMode = true;
  EXPECT_EQ(frameOf("leftColumn", {1920, 1080}), leftBefore.movedBy(10, 10));
  EXPECT_EQ(frameOf("rightColumn", {1920, 1080}), rightBefore.movedBy(10, 10));
  const auto list = shown(now);
  ASSERT_NE(find(list, "Call"), nullptr);
  EXPECT_EQ(find(list, "Call")->opacity, 0);
  ASSERT_NE(find(list, "Friday"), nullptr);
  EXPECT_EQ(find(list, "Friday")->opacity, 1);
  for (const auto& item : list) {
    const bool isRight = item.frame.x >= 518;
    EXPECT_TRUE(!isRight || item.bounds().isEmpty()) << describe(item);
  }
}

TEST_F(WallpaperDashboardViewTest, TheNextDeadlineMovesOnByItself) {
  manager->events = {event("First", at(20, 10)), event("Second", at(20, 11))};
  EXPECT_EQ(view->currentNextDeadline(at(20, 9, 59, 59))->title, "First");
  EXPECT_TRUE(shows("00:00:01", at(20, 9, 59, 59)));
  EXPECT_EQ(view->currentNextDeadline(at(20, 10))->title, "Second");
  EXPECT_TRUE(shows("01:00:00", at(20, 10)));
  EXPECT_EQ(view->currentNextDeadline(at(20, 11)), std::nullopt);
  EXPECT_TRUE(shows("--:--:--", at(20, 11)));
}

TEST_F(WallpaperDashboardViewTest, AClockSetBackBringsThePassedDeadlineBack) {
  manager->events = {event("First", at(20, 10)), event("Second", at(20, 11))};
  EXPECT_TRUE(shows("Second", at(20, 10, 0, 5)));
  EXPECT_TRUE(shows("01:00:00", at(20, 10)));
  EXPECT_TRUE(shows("00:00:02", at(20, 9, 59, 58)));
}

TEST_F(WallpaperDashboardViewTest, WhatCountsForTheDeadlineIsHeededAtOnce) {
  const Date instant = at(20, 9, 41, 30);
  const auto countdown = [&](const std::string& digits) { return shows(digits, instant); };
  manager->events = {event("Second", at(20, 11))};
  EXPECT_TRUE(countdown("01:18:30"));
  manager->events = {event("First", at(20, 10)), event("Second", at(20, 11))};
  EXPECT_TRUE(countdown("00:18:30"));
  settings->ignoredWordsText = std::string("first");
  EXPECT_TRUE(countdown("01:18:30"));
  settings->countdownIncludesEvents = false;
  EXPECT_TRUE(countdown("--:--:--"));
  manager->reminders = {reminder("Call", at(20, 9, 42))};
  EXPECT_TRUE(countdown("00:00:30"));
  manager->reminders = std::vector<DashboardReminder>{};
  settings->countdownIncludesEvents = true;
  settings->themeMode = DashboardThemeMode::light;
  EXPECT_EQ(
      std::get<TextItem>(find(shown(instant), "Work at Nov 20, 2026 at 11:00 AM")->content).color,
      settings->secondaryTextColor());
}

TEST_F(WallpaperDashboardViewTest, ADeadlineIsReplacedOnlyByOneThatIsDueEarlier) {
  manager->events = {event("Third", at(20, 10, 30)), event("First", at(20, 9, 50)),
                     event("Second", at(20, 10))};
  for (int second = 0; second < 3600; second += 13) {
    const Date instant = at(20, 9, 41) + second;
    const auto deadline = view->currentNextDeadline(instant);
    EXPECT_EQ(shows(deadline ? deadline->title : "--:--:--", instant), true) << second;
    EXPECT_TRUE(!deadline || shows(countdownString(deadline->date, instant), instant)) << second;
  }
}

TEST_F(WallpaperDashboardViewTest, BothObjectsAnnounceTheirChanges) {
  int announced = 0;
  {
    const auto observing = view->onWillChange([&] { ++announced; });
    manager->lastRefreshDate = now;
    settings->urgencyTinting = false;
    EXPECT_EQ(announced, 2);
  }
  settings->urgencyTinting = true;
  EXPECT_EQ(announced, 2);
}

TEST_F(WallpaperDashboardViewTest, APublishedChangeIsInTheNextBody) {
  EXPECT_TRUE(shows("Syncing with Apple Calendar and Reminders", now));
  bool announced = false;
  const auto observing = view->onWillChange([&] { announced = true; });
  manager->lastRefreshDate = now;
  EXPECT_TRUE(announced);
  EXPECT_TRUE(shows("Synced 9:41 AM", now));
  manager->reminders = {reminder("Call", std::nullopt)};
  EXPECT_TRUE(shows("Call", now));
  manager->calendarAuthorizationState = EventKitAuthorizationState::denied("Refused.");
  EXPECT_TRUE(shows("Refused.", now));
  settings->themeMode = DashboardThemeMode::light;
  EXPECT_EQ(std::get<TextItem>(find(shown(now), "Call")->content).color, lightThemeTextColor);
}

TEST_F(WallpaperDashboardViewTest, ATickDamagesOnlyTheChangedDigits) {
  manager->events = {event("Launch", at(20, 13)), event("Lunchtime walk", at(20, 12, 30), true)};
  manager->reminders = {reminder("Call", at(20, 18))};
  settings->ignoredWordsText = std::string();
  Scene scene(view, measurer);
  scene.update(at(20, 9, 41, 10), {1920, 1080});
  const auto* countdown = find(scene.list(), "03:18:50");
  ASSERT_NE(countdown, nullptr);
  const Rect frame = countdown->frame;
  const int measured = measurer.measured();
  const auto damage = scene.update(at(20, 9, 41, 11), {1920, 1080});
  // The seconds' two digits, 50 to 49, which stand side by side at the end.
  ASSERT_EQ(damage.size(), 1U);
  EXPECT_NEAR(damage[0].right(), frame.right() + 1, 1e-6);
  EXPECT_NEAR(damage[0].width, 2 * 0.6 * 56 + 2, 1e-6);
  EXPECT_NEAR(damage[0].height, 1.2 * 56 + 2, 1e-6);
  const auto next = scene.update(at(20, 9, 41, 12), {1920, 1080});
  ASSERT_EQ(next.size(), 1U);
  EXPECT_NEAR(next[0].width, 0.6 * 56 + 2, 1e-6);
  EXPECT_EQ(measurer.measured(), measured);
}

// What is remembered from tick to tick must be what a fresh view shows.
TEST_F(WallpaperDashboardViewTest, EveryTickShowsWhatAFreshViewShows) {
  manager->events = {event("Soon", at(20, 9, 43)), event("Noon", at(20, 12)),
                     event("Fair", at(20, 0), true), event("Tomorrow", at(21, 9))};
  manager->reminders = {reminder("Due", at(20, 9, 44, 30)), reminder("Someday", std::nullopt),
                        reminder("Monday", at(23, 9))};
  Scene scene(view, measurer);
  for (int second = 0; second < 240; second += second % 60 < 57 ? 7 : 1) {
    now = at(20, 9, 41) + second;
    scene.update(now, {1280, 720});
    WallpaperDashboardView fresh(manager, settings, {locale, calendar, [this] { return now; }});
    const auto anew = layout(fresh.body(now, {1280, 720}), {1280, 720}, measurer);
    ASSERT_EQ(describe(scene.list()), describe(anew.list)) << second;
    ASSERT_EQ(scene.layout(), anew) << second;
  }
}

TEST_F(WallpaperDashboardViewTest, TheDayTurnsAtMidnight) {
  manager->events = {event("Late", at(20, 23)), event("Early", at(21, 7))};
  now = at(20, 23, 59, 59);
  EXPECT_TRUE(shows("Friday", now));
  EXPECT_TRUE(shows("Late", now));
  now = at(21, 0);
  EXPECT_TRUE(shows("Saturday", now));
  EXPECT_TRUE(shows("November 21, 2026", now));
  EXPECT_FALSE(shows("Late", now));
  EXPECT_TRUE(shows("Early", now));
}

TEST_F(WallpaperDashboardViewTest, ManyItemsCostNoMoreThanWhatIsShown) {
  std::vector<DashboardEvent> events;
  std::vector<DashboardReminder> reminders;
  for (int index = 0; index < 10'000; ++index) {
    events.push_back(event("Event " + std::to_string(index), at(20, 10) + index));
    reminders.push_back(reminder("Reminder " + std::to_string(index), at(20, 12)));
  }
  manager->events = events;
  manager->reminders = reminders;
  const auto list = shown(now);
  EXPECT_LT(list.size(), 250U);
  EXPECT_NE(find(list, "10,000"), nullptr);
}

TEST_F(WallpaperDashboardViewTest, WhoObservesMayOutliveTheView) {
  int heard = 0;
  auto observing = view->onWillChange([&] { ++heard; });
  view.reset();
  settings->glassOpacity = 0.5;
  manager->isRefreshing = true;
  EXPECT_EQ(heard, 2);
  observing.cancel();
  settings->glassOpacity = 0.6;
  EXPECT_EQ(heard, 2);
}

}  // namespace
}  // namespace orvane
