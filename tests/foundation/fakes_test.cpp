// The stand-ins that other tests rely on keep the promises of what they stand for.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "fakes/fixed_calendar.h"
#include "fakes/manual_main_actor.h"
#include "fakes/plain_locale.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;

TEST(ManualMainActor, TimersFireInOrderAtTheirOwnInstants) {
  fakes::ManualMainActor actor({100});
  std::string seen;
  const auto note = [&](const char* name) {
    return [&, name] {
      seen += name + std::to_string(std::lround((actor.now() - Date{100}) * 1000)) + " ";
    };
  };
  const auto b = actor.after(20ms, note("b"));
  const auto a = actor.after(10ms, note("a"));
  const auto c = actor.after(20ms, note("c"));
  actor.advance(15ms);
  EXPECT_EQ(seen, "a10 ");
  actor.advance(1s);
  EXPECT_EQ(seen, "a10 b20 c20 ");
}

TEST(ManualMainActor, AnEndedTimerNeverFiresAndATimerMayEndItself) {
  fakes::ManualMainActor actor;
  int fired = 0;
  Subscription self;
  auto other = actor.after(1s, [&] { fired += 100; });
  self = actor.after(0s, [&] {
    ++fired;
    self.cancel();
    other.cancel();
  });
  actor.advance(1h);
  EXPECT_EQ(fired, 1);
}

TEST(ManualMainActor, NothingIsCalledBeforeTheCallThatGaveItReturned) {
  fakes::ManualMainActor actor;
  bool called = false;
  actor.post([&] { called = true; });
  actor.runOnWorker([&] { called = true; });
  const auto timer = actor.after(-1s, [&] { called = true; });
  EXPECT_FALSE(called);
  actor.runUntilIdle();
  EXPECT_TRUE(called);
}

TEST(ManualMainActor, SettingTheWallClockMovesNoTimer) {
  fakes::ManualMainActor actor({100});
  bool fired = false;
  const auto timer = actor.after(10s, [&] { fired = true; });
  actor.setWallClock({5000});
  EXPECT_EQ(actor.now(), Date{5000});
  actor.advance(9s);
  EXPECT_FALSE(fired);
  actor.advance(1s);
  EXPECT_TRUE(fired);
  EXPECT_EQ(actor.now(), Date{5010});
}

TEST(FixedCalendar, DaysBeginAtLocalMidnightAlsoAcrossClockChanges) {
  Date now{0};
  fakes::FixedCalendar calendar([&] { return now; }, 3600);
  const Date change{fakes::secondsOf({2026, 3, 29, 1, 0, 0})};
  calendar.changeOffset(change, 7200);
  const auto utc = [](int day, int hour) { return Date{fakes::secondsOf({2026, 3, day, hour})}; };
  EXPECT_EQ(calendar.startOfDay(utc(29, 12)), utc(28, 23));
  EXPECT_EQ(calendar.dateByAddingDays(1, utc(28, 23)), utc(29, 22));
  EXPECT_EQ(calendar.at({2026, 3, 29, 2, 30, 0}), utc(29, 1) + 1800);
  now = utc(29, 21);
  EXPECT_TRUE(calendar.isDateInToday(utc(28, 23)));
  EXPECT_FALSE(calendar.isDateInToday(utc(29, 22)));
}

TEST(FixedCalendar, ComponentsAreLocalUnlessTheyNameUtc) {
  const fakes::FixedCalendar calendar([] { return Date{0}; }, 3600);
  DateComponents components{"gregorian", std::nullopt, 2026, 11, 20, 9, 30, 0};
  EXPECT_EQ(calendar.date(components), Date{fakes::secondsOf({2026, 11, 20, 8, 30, 0})});
  components.timeZone = "UTC";
  EXPECT_EQ(calendar.dateOfComponents(components),
            Date{fakes::secondsOf({2026, 11, 20, 9, 30, 0})});
  components.calendar.reset();
  EXPECT_EQ(calendar.dateOfComponents(components), std::nullopt);
}

TEST(PlainLocale, SpeaksEnglish) {
  const fakes::PlainLocale locale(3600);
  const Date date{fakes::secondsOf({2026, 11, 20, 8, 41, 0})};
  EXPECT_EQ(locale.weekdayWide(date), "Friday");
  EXPECT_EQ(locale.dateLong(date), "November 20, 2026");
  EXPECT_EQ(locale.dateAbbreviatedTimeShortened(date), "Nov 20, 2026 at 9:41 AM");
  EXPECT_EQ(locale.timeShortened(date + 4 * 3600), "1:41 PM");
  EXPECT_EQ(locale.integer(1234567), "1,234,567");
  EXPECT_EQ(locale.integer(-1234), "-1,234");
  EXPECT_EQ(locale.integer(-123), "-123");
}

}  // namespace
}  // namespace orvane
