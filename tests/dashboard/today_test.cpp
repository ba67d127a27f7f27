#include "dashboard/today.h"

#include <gtest/gtest.h>

#include <string>

#include "fakes/fixed_calendar.h"

namespace orvane {
namespace {

class EventsByDayTest : public testing::Test {
 protected:
  fakes::FixedCalendar calendar{[this] { return now; }};
  Date now = at({2026, 11, 20, 12, 0, 0});
  std::vector<DashboardEvent> events;

  [[nodiscard]] Date at(const fakes::CivilTime& local) const { return calendar.at(local); }
  void add(const std::string& title, Date start, double hours = 1) {
    events.push_back({title, title, "Work", "work", start, start + hours * 3600, false});
  }
  static std::string titles(const EventList& list) {
    std::string result;
    for (const DashboardEvent& event : list) result += event.title + " ";
    return result;
  }
  [[nodiscard]] std::string today() const {
    return titles(eventsByDay(events, now, calendar).today);
  }
  [[nodiscard]] std::string later() const {
    return titles(eventsByDay(events, now, calendar).later);
  }
};

TEST_F(EventsByDayTest, WhatStartedEarlierTodayIsToday) {
  add("morning", at({2026, 11, 20, 8, 0, 0}));
  add("midnight", at({2026, 11, 20, 0, 0, 0}));
  add("lastSecond", at({2026, 11, 20, 23, 59, 59}));
  EXPECT_EQ(today(), "morning midnight lastSecond ");
  EXPECT_EQ(later(), "");
}

TEST_F(EventsByDayTest, TomorrowIsLater) {
  add("tomorrow", at({2026, 11, 21, 0, 0, 0}));
  EXPECT_EQ(today(), "");
  EXPECT_EQ(later(), "tomorrow ");
}

TEST_F(EventsByDayTest, WhatBeganYesterdayAndGoesOnIsInNeither) {
  add("night", at({2026, 11, 19, 22, 0, 0}), 20);
  EXPECT_EQ(today(), "");
  EXPECT_EQ(later(), "");
}

TEST_F(EventsByDayTest, TheGivenOrderIsKept) {
  add("b", at({2026, 11, 20, 9, 0, 0}));
  add("z", at({2026, 11, 23, 9, 0, 0}));
  add("a", at({2026, 11, 20, 8, 0, 0}));
  add("y", at({2026, 11, 22, 9, 0, 0}));
  EXPECT_EQ(today(), "b a ");
  EXPECT_EQ(later(), "z y ");
}

TEST_F(EventsByDayTest, DaysMayBeLongerAndShorter) {
  // The clocks go back an hour on the 20th: it has 25 hours.
  calendar.changeOffset(at({2026, 11, 20, 3, 0, 0}), -3600);
  add("late", {fakes::secondsOf({2026, 11, 20, 24, 30, 0})});
  EXPECT_EQ(today(), "late ");
}

TEST_F(EventsByDayTest, ADayMayBeginAfterMidnight) {
  // The clocks skip the first hour of the 20th, so that it begins at one, and the 21st at zero.
  calendar.changeOffset(at({2026, 11, 20, 0, 0, 0}), 3600);
  add("tomorrow", {fakes::secondsOf({2026, 11, 20, 23, 10, 0})});
  EXPECT_EQ(today(), "");
  EXPECT_EQ(later(), "tomorrow ");
}

TEST_F(EventsByDayTest, ACalendarThatCannotAddADayHasDaysOf24Hours) {
  calendar.setCannotAddDays(true);
  add("tonight", at({2026, 11, 20, 23, 0, 0}));
  add("tomorrow", at({2026, 11, 21, 0, 0, 0}));
  EXPECT_EQ(today(), "tonight ");
  EXPECT_EQ(later(), "tomorrow ");
}

}  // namespace
}  // namespace orvane
