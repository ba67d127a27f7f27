#include "linux/locale/calendar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>
#include <vector>

namespace orvane::host {
namespace {

constexpr double kHour = 3600;
constexpr double kDay = 24 * kHour;

// Instants as "seconds since 1970" of UTC texts, without asking the code under test.
Date utc(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  std::tm fields{};
  fields.tm_year = year - 1900, fields.tm_mon = month - 1, fields.tm_mday = day;
  fields.tm_hour = hour, fields.tm_min = minute, fields.tm_sec = second;
  return {static_cast<double>(timegm(&fields))};
}

DateComponents components(int year, int month, int day) {
  DateComponents result;
  result.calendar = "gregorian";
  result.year = year, result.month = month, result.day = day;
  return result;
}

DateComponents components(int year, int month, int day, int hour, int minute, int second = 0) {
  auto result = components(year, month, day);
  result.hour = hour, result.minute = minute, result.second = second;
  return result;
}

std::unique_ptr<SystemCalendar> calendarIn(const std::string& zone, Date now = {0}) {
  Region region;
  region.timeZone = zone;
  region.now = [now] { return now; };
  return makeCalendar(std::move(region));
}

struct DayCase {
  const char* zone;
  Date inside, start, next;
};

class StartOfDay : public testing::TestWithParam<DayCase> {};

TEST_P(StartOfDay, IsTheFirstInstantOfTheLocalDay) {
  const auto& [zone, inside, start, next] = GetParam();
  const auto calendar = calendarIn(zone);
  EXPECT_EQ(calendar->startOfDay(inside), start);
  EXPECT_EQ(calendar->startOfDay(start), start);
  EXPECT_EQ(calendar->startOfDay(next + -0.5), start);
  EXPECT_EQ(calendar->startOfNextDay(inside), next);
  EXPECT_EQ(calendar->startOfDay(next), next);
}

INSTANTIATE_TEST_SUITE_P(
    Zones, StartOfDay,
    testing::Values(
        DayCase{"UTC", utc(2026, 11, 20, 9, 41), utc(2026, 11, 20), utc(2026, 11, 21)},
        DayCase{"Europe/Berlin", utc(2026, 11, 19, 23, 30), utc(2026, 11, 19, 23),
                utc(2026, 11, 20, 23)},
        // 23 hours, then 25.
        DayCase{"Europe/Berlin", utc(2026, 3, 29, 12), utc(2026, 3, 28, 23), utc(2026, 3, 29, 22)},
        DayCase{"Europe/Berlin", utc(2026, 10, 25, 12), utc(2026, 10, 24, 22),
                utc(2026, 10, 25, 23)},
        // Midnight is skipped: the day begins at one o'clock.
        DayCase{"America/Sao_Paulo", utc(2018, 11, 4, 12), utc(2018, 11, 4, 3),
                utc(2018, 11, 5, 2)},
        DayCase{"Asia/Beirut", utc(2021, 3, 28, 12), utc(2021, 3, 27, 22), utc(2021, 3, 28, 21)},
        DayCase{"America/Havana", utc(2026, 3, 8, 12), utc(2026, 3, 8, 5), utc(2026, 3, 9, 4)},
        // Midnight comes twice: the day begins with the first.
        DayCase{"America/Havana", utc(2026, 11, 1, 12), utc(2026, 11, 1, 4), utc(2026, 11, 2, 5)},
        // The day before ends with its last hour twice.
        DayCase{"America/Sao_Paulo", utc(2018, 2, 18, 2, 30), utc(2018, 2, 17, 2),
                utc(2018, 2, 18, 3)},
        DayCase{"Asia/Kathmandu", utc(2026, 6, 1, 0), utc(2026, 5, 31, 18, 15),
                utc(2026, 6, 1, 18, 15)},
        DayCase{"Pacific/Kiritimati", utc(2026, 6, 1, 11), utc(2026, 6, 1, 10),
                utc(2026, 6, 2, 10)},
        DayCase{"UTC", utc(1969, 12, 31, 1), utc(1969, 12, 31), utc(1970, 1, 1)}));

TEST(CalendarTest, AddsDaysAtTheSameLocalTime) {
  const auto calendar = calendarIn("Europe/Berlin");
  EXPECT_EQ(calendar->dateByAddingDays(7, utc(2026, 3, 24, 8)), utc(2026, 3, 31, 7));
  EXPECT_EQ(calendar->dateByAddingDays(-7, utc(2026, 3, 31, 7)), utc(2026, 3, 24, 8));
  EXPECT_EQ(calendar->dateByAddingDays(0, utc(2026, 3, 31, 7)), utc(2026, 3, 31, 7));
  EXPECT_EQ(calendar->dateByAddingDays(1, utc(2026, 10, 24, 22)), utc(2026, 10, 25, 23));
}

TEST(CalendarTest, AddingDaysIntoASkippedHourMovesForward) {
  const auto calendar = calendarIn("Europe/Berlin");
  EXPECT_EQ(calendar->dateByAddingDays(1, utc(2026, 3, 28, 1, 30)), utc(2026, 3, 29, 1, 30));
  // From midnight to a day without one.
  EXPECT_EQ(calendarIn("America/Sao_Paulo")->dateByAddingDays(1, utc(2018, 11, 3, 3)),
            utc(2018, 11, 4, 3));
}

TEST(CalendarTest, DatesBeyondAllCalendarsAreLeftAlone) {
  const auto calendar = calendarIn("Europe/Berlin");
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double seconds : {infinity, -infinity, 1e300, -1e300, 9e12}) {
    EXPECT_EQ(calendar->startOfDay({seconds}), Date{seconds});
    EXPECT_EQ(calendar->dateByAddingDays(7, {seconds}), std::nullopt);
    EXPECT_FALSE(calendar->isDateInToday({seconds}));
  }
  EXPECT_TRUE(std::isnan(calendar->startOfDay({std::nan("")}).secondsSince1970));
  EXPECT_EQ(calendar->dateByAddingDays(1, {std::nan("")}), std::nullopt);
  EXPECT_FALSE(calendar->isDateInToday({std::nan("")}));
  EXPECT_EQ(calendar->dateByAddingDays(std::numeric_limits<int>::max(), {7e12}), std::nullopt);
}

TEST(CalendarTest, TodayIsTheLocalDayOfNow) {
  Date now = utc(2026, 11, 20, 12);
  Region region;
  region.timeZone = "America/New_York";
  region.now = [&now] { return now; };
  const auto calendar = makeCalendar(region);
  const Date start = utc(2026, 11, 20, 5);
  EXPECT_TRUE(calendar->isDateInToday(start));
  EXPECT_FALSE(calendar->isDateInToday(start - 0.001));
  EXPECT_TRUE(calendar->isDateInToday(start + kDay - 0.001));
  EXPECT_FALSE(calendar->isDateInToday(start + kDay));
  now = now + kDay;
  EXPECT_FALSE(calendar->isDateInToday(start));
  EXPECT_TRUE(calendar->isDateInToday(start + kDay));
  now = now - 2 * kDay;
  EXPECT_TRUE(calendar->isDateInToday(start - kHour));
}

struct ComponentsCase {
  const char* zone;
  DateComponents components;
  std::optional<Date> date;
};

DateComponents inZone(DateComponents result, const char* zone) {
  result.timeZone = zone;
  return result;
}

class ComponentsToDate : public testing::TestWithParam<ComponentsCase> {};

TEST_P(ComponentsToDate, DenotesTheDateOrNone) {
  const auto calendar = calendarIn(GetParam().zone);
  EXPECT_EQ(calendar->date(GetParam().components), GetParam().date);
  EXPECT_EQ(calendar->dateOfComponents(GetParam().components), GetParam().date);
}

INSTANTIATE_TEST_SUITE_P(
    Table, ComponentsToDate,
    testing::Values(
        // Absent times of day are zero; so is a time of which only a part is there.
        ComponentsCase{"Europe/Berlin", components(2026, 11, 20), utc(2026, 11, 19, 23)},
        ComponentsCase{"Europe/Berlin", components(2026, 11, 20, 9, 41), utc(2026, 11, 20, 8, 41)},
        // Its own zone counts, and one that nobody knows does not.
        ComponentsCase{"Europe/Berlin", inZone(components(2026, 11, 20, 9, 41), "Asia/Tokyo"),
                       utc(2026, 11, 20, 0, 41)},
        ComponentsCase{"Europe/Berlin", inZone(components(2026, 11, 20, 9, 41), "UTC"),
                       utc(2026, 11, 20, 9, 41)},
        ComponentsCase{"Europe/Berlin", inZone(components(2026, 11, 20, 9, 41), "Mars/Olympus"),
                       utc(2026, 11, 20, 8, 41)},
        // A skipped hour moves forward by the gap, and so does a skipped midnight.
        ComponentsCase{"Europe/Berlin", components(2026, 3, 29, 2, 30), utc(2026, 3, 29, 1, 30)},
        ComponentsCase{"America/Sao_Paulo", components(2018, 11, 4), utc(2018, 11, 4, 3)},
        // An hour that comes twice is the first.
        ComponentsCase{"Europe/Berlin", components(2026, 10, 25, 2, 30), utc(2026, 10, 25, 0, 30)},
        // Fields out of their range are no date.
        ComponentsCase{"UTC", components(2026, 13, 1), std::nullopt},
        ComponentsCase{"UTC", components(2026, 0, 1), std::nullopt},
        ComponentsCase{"UTC", components(2026, 2, 29), std::nullopt},
        ComponentsCase{"UTC", components(2028, 2, 29), utc(2028, 2, 29)},
        ComponentsCase{"UTC", components(2026, 4, 31), std::nullopt},
        ComponentsCase{"UTC", components(2026, 4, -1), std::nullopt},
        ComponentsCase{"UTC", components(2026, 1, 1, 24, 0), std::nullopt},
        ComponentsCase{"UTC", components(2026, 1, 1, 0, 60), std::nullopt},
        ComponentsCase{"UTC", components(2026, 1, 1, 0, -1), std::nullopt},
        ComponentsCase{"UTC", components(2147483647, 1, 1), std::nullopt},
        ComponentsCase{"UTC", components(2026, 2147483647, 1), std::nullopt},
        ComponentsCase{"UTC", components(2016, 12, 31, 23, 59, 60), utc(2017, 1, 1)},
        // The Gregorian calendar counts as if it had always been in use.
        ComponentsCase{"UTC", components(1, 1, 1), utc(1, 1, 1)},
        ComponentsCase{"UTC", components(9999, 12, 31), utc(9999, 12, 31)},
        ComponentsCase{"UTC", components(1500, 3, 1), utc(1500, 3, 1)}));

TEST(CalendarTest, ComponentsWithoutACalendarHaveADateHereButNoneOfTheirOwn) {
  auto fields = components(2026, 11, 20);
  fields.calendar.reset();
  const auto calendar = calendarIn("UTC");
  EXPECT_EQ(calendar->date(fields), utc(2026, 11, 20));
  EXPECT_EQ(calendar->dateOfComponents(fields), std::nullopt);
}

TEST(CalendarTest, ComponentsCountInTheCalendarTheyName) {
  auto fields = components(2569, 11, 20);
  fields.calendar = "buddhist";
  EXPECT_EQ(calendarIn("UTC")->date(fields), utc(2026, 11, 20));
  fields = components(2026, 11, 20);
  fields.calendar = "nobody's";
  EXPECT_EQ(calendarIn("UTC")->date(fields), utc(2026, 11, 20));
}

TEST(CalendarTest, ComponentsWithoutYearMonthOrDayAreNoDate) {
  const auto calendar = calendarIn("UTC");
  EXPECT_EQ(calendar->date({}), std::nullopt);
  auto fields = components(2026, 11, 20);
  fields.year.reset();
  EXPECT_EQ(calendar->date(fields), std::nullopt);
  fields = components(2026, 11, 20);
  fields.day.reset();
  EXPECT_EQ(calendar->date(fields), std::nullopt);
}

TEST(CalendarTest, MayBeAskedFromManyThreadsWhileTheZoneChanges) {
  const auto calendar = calendarIn("Europe/Berlin", utc(2026, 11, 20, 12));
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&, t] {
      for (int i = 0; i < 300; ++i) {
        const Date date = utc(2026, 1 + (i + t) % 12, 15, 12);
        const Date start = calendar->startOfDay(date);
        EXPECT_LE(date - start, kDay);
        EXPECT_EQ(calendar->date(components(2026, 11, 20)), utc(2026, 11, 19, 23));
        if (t == 0 && i % 50 == 0) calendar->systemChanged();
      }
    });
  }
  for (auto& thread : threads) thread.join();
}

}  // namespace
}  // namespace orvane::host
