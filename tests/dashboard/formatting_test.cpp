#include "dashboard/formatting.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "dashboard/date_card.h"
#include "dashboard/events_card.h"
#include "dashboard/reminder_row.h"
#include "fakes/plain_locale.h"
#include "themes.h"

namespace orvane {
namespace {

const Date now{1'795'167'660};

TEST(CountdownString, HoursAreNeitherCappedNorSplit) {
  const std::vector<std::pair<double, std::string>> cases{
      {0, "00:00:00"},      {-5, "00:00:00"},   {59.9, "00:00:59"},  {0.9, "00:00:00"},
      {-86400, "00:00:00"}, {3600, "01:00:00"}, {90061, "25:01:01"}, {27 * 3600 + 309, "27:05:09"},
      {360000, "100:00:00"}};
  for (const auto& [delta, expected] : cases) {
    EXPECT_EQ(countdownString(now + delta, now), expected) << delta;
  }
}

TEST(CountdownString, AbsurdIntervalsAreSurvived) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(countdownString({-infinity}, now), "00:00:00");
  EXPECT_EQ(countdownString({std::nan("")}, now), "00:00:00");
  EXPECT_EQ(countdownString({infinity}, now), countdownString({1e300}, now));
}

TEST(ShortETA, RoundsDownButNeverToZeroMinutes) {
  const std::vector<std::pair<double, std::string>> cases{
      {0.5, "now"},       {-30, "now"},     {0, "now"},       {1, "1m"},
      {59, "1m"},         {60, "1m"},       {119, "1m"},      {119.9, "1m"},
      {120, "2m"},        {3599, "59m"},    {3600, "1h 0m"},  {7384, "2h 3m"},
      {86399, "23h 59m"}, {86400, "1d 0h"}, {90000, "1d 1h"}, {200000, "2d 7h"}};
  for (const auto& [delta, expected] : cases) {
    EXPECT_EQ(shortETA(Date{1000 + delta}, Date{1000}), expected) << delta;
  }
}

TEST(ShortETA, AbsurdIntervalsAreSurvived) {
  EXPECT_EQ(shortETA({std::nan("")}, now), "now");
  EXPECT_EQ(shortETA({-1e300}, now), "now");
  EXPECT_EQ(shortETA({1e300}, now).back(), 'h');
}

Color colorAt(double delta, const DashboardAppearance& settings) {
  return countdownColor(Date{1000 + delta}, Date{1000}, settings);
}

TEST(CountdownColor, UrgencyComesInBands) {
  for (const auto theme : allDashboardThemeModes) {
    const auto settings = themed(theme);
    const Color red = Color::red().opacity(0.92);
    const Color orange = Color::orange().opacity(0.98);
    const Color yellow = Color::yellow().opacity(0.95);
    EXPECT_EQ(colorAt(-1, settings), red);
    EXPECT_EQ(colorAt(0, settings), red);
    EXPECT_EQ(colorAt(std::nan(""), settings), red);
    EXPECT_EQ(colorAt(0.001, settings), orange);
    EXPECT_EQ(colorAt(1, settings), orange);
    EXPECT_EQ(colorAt(1799.9, settings), orange);
    EXPECT_EQ(colorAt(1800, settings), yellow);
    EXPECT_EQ(colorAt(7199, settings), yellow);
    EXPECT_EQ(colorAt(7200, settings), settings.neutral());
    EXPECT_EQ(colorAt(1e9, settings), settings.neutral());
  }
}

TEST(CountdownColor, WithoutTintingItIsAlwaysNeutral) {
  for (const auto theme : allDashboardThemeModes) {
    auto settings = themed(theme);
    settings.urgencyTinting = false;
    for (const double delta : {-1.0, 0.0, 1.0, 1800.0, 7200.0}) {
      EXPECT_EQ(colorAt(delta, settings), settings.neutral());
    }
  }
}

TEST(CountdownColor, NeutralFollowsTheTheme) {
  EXPECT_EQ(colorAt(7200, themed(DashboardThemeMode::vividBlue)), Color::white());
  EXPECT_EQ(colorAt(7200, themed(DashboardThemeMode::dark)), Color::white());
  EXPECT_EQ(colorAt(7200, themed(DashboardThemeMode::light)), Color::srgb(0.08, 0.10, 0.16));
}

TEST(RefreshText, SaysWhenOrThatItIsUnderWay) {
  const fakes::PlainLocale locale;
  EXPECT_EQ(DateCard{std::nullopt}.refreshText(locale),
            "Syncing with Apple Calendar and Reminders");
  EXPECT_EQ(DateCard{now}.refreshText(locale), "Synced " + locale.timeShortened(now));
  EXPECT_EQ(DateCard{Date{1'795'167'660}}.refreshText(locale), "Synced 9:41 AM");
}

DashboardEvent event(const std::string& title, bool isAllDay) {
  return {"id", title, "Work", "work", now + 86400, now + 90000, isAllDay};
}

TEST(NextEventText, IsTheFirstTimedEvent) {
  const fakes::PlainLocale locale;
  const auto allDay = event("A", true);
  const auto timed = event("B", false);
  const auto textFor = [&](const EventList& events) {
    return EventsCard{"Today", {}, events}.nextEventText(locale);
  };
  EXPECT_EQ(textFor({std::cref(allDay), std::cref(timed)}), "Next: B Nov 21, 2026 at 9:41 AM");
  EXPECT_EQ(textFor({std::cref(allDay)}), "Your calendar is clear.");
  EXPECT_EQ(textFor({}), "Your calendar is clear.");
}

TEST(PriorityColor, HighMediumLowAndNone) {
  const auto settings = themed(DashboardThemeMode::dark);
  const auto colorOf = [&](std::int64_t priority) {
    ReminderRow row;
    row.reminder.priority = priority;
    return row.priorityColor(settings);
  };
  const Color none = Color::white().opacity(0.9);
  const std::vector<std::pair<std::int64_t, Color>> cases{
      {1, Color::red()},    {4, Color::red()},    {5, Color::orange()},
      {6, Color::yellow()}, {9, Color::yellow()}, {0, none},
      {10, none},           {-1, none},           {std::numeric_limits<std::int64_t>::min(), none}};
  for (const auto& [priority, expected] : cases) EXPECT_EQ(colorOf(priority), expected) << priority;
  ReminderRow row;
  EXPECT_EQ(row.priorityColor(themed(DashboardThemeMode::light)), lightThemeTextColor.opacity(0.9));
}

}  // namespace
}  // namespace orvane
