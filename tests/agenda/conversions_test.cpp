#include "agenda/conversions.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "fakes/civil_time.h"
#include "fakes/fixed_calendar.h"

namespace orvane {
namespace {

EKEvent storedEvent() {
  EKEvent event;
  event.eventIdentifier = "event";
  event.calendarItemIdentifier = "item";
  event.title = "Review";
  event.calendar = std::make_shared<EKCalendar>(EKCalendar{"work", "Work"});
  event.startDate = Date{1000};
  event.endDate = Date{2000};
  return event;
}

EKReminder storedReminder() {
  EKReminder reminder;
  reminder.calendarItemIdentifier = "item";
  reminder.title = "Pay rent";
  reminder.calendar = std::make_shared<EKCalendar>(EKCalendar{"home", "Home"});
  reminder.priority = 9;
  return reminder;
}

const fakes::FixedCalendar& berlin() {
  static const fakes::FixedCalendar calendar([] { return Date{0}; }, 3600);
  return calendar;
}

TEST(DashboardEventConversion, CopiesWhatIsThere) {
  auto event = storedEvent();
  event.isAllDay = true;
  EXPECT_EQ(dashboardEvent(event),
            (DashboardEvent{"event", "Review", "Work", "work", {1000}, {2000}, true}));
}

TEST(DashboardEventConversion, WithoutACalendarItSaysCalendar) {
  auto event = storedEvent();
  event.calendar.reset();
  EXPECT_EQ(dashboardEvent(event).calendarTitle, "Calendar");
  EXPECT_EQ(dashboardEvent(event).calendarIdentifier, "");
}

TEST(DashboardEventConversion, BlankTitlesAreUntitled) {
  auto event = storedEvent();
  for (const auto& title :
       {std::optional<std::string>("   "), std::optional<std::string>(""),
        std::optional<std::string>("\n\t\u00A0"), std::optional<std::string>()}) {
    event.title = title;
    EXPECT_EQ(dashboardEvent(event).title, "Untitled Event");
  }
  event.title = " \n Two  words\t";
  EXPECT_EQ(dashboardEvent(event).title, "Two  words");
}

TEST(DashboardEventConversion, WithoutAnIdentifierItIsKnownByItemAndStart) {
  auto event = storedEvent();
  event.eventIdentifier.reset();
  event.startDate = Date{1795167660};
  EXPECT_EQ(dashboardEvent(event).id, "item-1795167660.0");
  event.startDate = Date{1795167660.25};
  EXPECT_EQ(dashboardEvent(event).id, "item-1795167660.25");
}

TEST(DashboardEventConversionDeathTest, AnEventWithoutDatesStopsTheProcess) {
  auto event = storedEvent();
  event.endDate.reset();
  EXPECT_DEATH(static_cast<void>(dashboardEvent(event)), "dates");
  event = storedEvent();
  event.startDate.reset();
  EXPECT_DEATH(static_cast<void>(dashboardEvent(event)), "dates");
}

TEST(DecimalText, IsTheShortestThatReadsBackWithADigitAfterThePoint) {
  EXPECT_EQ(decimalText(0), "0.0");
  EXPECT_EQ(decimalText(-62135596800), "-62135596800.0");
  EXPECT_EQ(decimalText(0.1), "0.1");
  EXPECT_EQ(decimalText(1.7e9), "1700000000.0");
  EXPECT_EQ(decimalText(1.0 / 3), "0.3333333333333333");
  EXPECT_EQ(decimalText(253402300799.123), "253402300799.123");
  EXPECT_EQ(decimalText(1e22), "10000000000000000000000.0");
  EXPECT_EQ(std::strtod(decimalText(5e-324).c_str(), nullptr), 5e-324);
  EXPECT_EQ(std::strtod(decimalText(1.7976931348623157e308).c_str(), nullptr),
            1.7976931348623157e308);
}

TEST(DashboardReminderConversion, CopiesWhatIsThere) {
  auto reminder = storedReminder();
  EXPECT_EQ(dashboardReminder(reminder, berlin()),
            (DashboardReminder{"item", "Pay rent", "Home", "home", std::nullopt, 9}));
}

TEST(DashboardReminderConversion, WithoutAListItSaysReminders) {
  auto reminder = storedReminder();
  reminder.calendar.reset();
  EXPECT_EQ(dashboardReminder(reminder, berlin()).calendarTitle, "Reminders");
  EXPECT_EQ(dashboardReminder(reminder, berlin()).calendarIdentifier, "");
}

TEST(DashboardReminderConversion, BlankTitlesAreUntitled) {
  auto reminder = storedReminder();
  reminder.title = " \r\n";
  EXPECT_EQ(dashboardReminder(reminder, berlin()).title, "Untitled Reminder");
  reminder.title.reset();
  EXPECT_EQ(dashboardReminder(reminder, berlin()).title, "Untitled Reminder");
}

TEST(DashboardReminderConversion, TheDueDateIsReadInTheUsersCalendar) {
  auto reminder = storedReminder();
  DateComponents components;
  components.year = 2026;
  components.month = 11;
  components.day = 20;
  reminder.dueDateComponents = components;
  // Without a calendar of its own it has no sort date, and is due all the same.
  EXPECT_EQ(dashboardReminder(reminder, berlin()).dueDate,
            Date{fakes::secondsOf({2026, 11, 19, 23, 0, 0})});
}

}  // namespace
}  // namespace orvane
