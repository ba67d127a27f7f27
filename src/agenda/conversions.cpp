#include "agenda/conversions.h"

#include <array>
#include <charconv>

#include "foundation/fatal_error.h"
#include "foundation/trimmed.h"

namespace orvane {
namespace {

// Room for the longest double without an exponent: 309 digits before the point, or 1074 after it.
constexpr std::size_t longestDecimal = 1100;

std::string shownTitle(const std::optional<std::string>& title, const char* untitled) {
  const auto text = title ? trimmed(*title) : std::string_view();
  return std::string(text.empty() ? std::string_view(untitled) : text);
}

std::string titleOf(const std::shared_ptr<const EKCalendar>& calendar, const char* unknown) {
  return calendar ? calendar->title : unknown;
}

std::string identifierOf(const std::shared_ptr<const EKCalendar>& calendar) {
  return calendar ? calendar->calendarIdentifier : std::string();
}

}  // namespace

DashboardEvent dashboardEvent(const EKEvent& event) {
  if (!event.startDate || !event.endDate) fatalError("An event has no dates.");
  return {event.eventIdentifier
              ? *event.eventIdentifier
              : event.calendarItemIdentifier + "-" + decimalText(event.startDate->secondsSince1970),
          shownTitle(event.title, "Untitled Event"),
          titleOf(event.calendar, "Calendar"),
          identifierOf(event.calendar),
          *event.startDate,
          *event.endDate,
          event.isAllDay};
}

DashboardReminder dashboardReminder(const EKReminder& reminder, const Calendar& calendar) {
  return {reminder.calendarItemIdentifier,
          shownTitle(reminder.title, "Untitled Reminder"),
          titleOf(reminder.calendar, "Reminders"),
          identifierOf(reminder.calendar),
          reminder.dueDateComponents ? calendar.date(*reminder.dueDateComponents) : std::nullopt,
          reminder.priority};
}

std::string decimalText(double number) {
  std::array<char, longestDecimal> buffer{};
  const auto written =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::fixed);
  std::string text(buffer.data(), written.ptr);
  if (text.find('.') == std::string::npos) text += ".0";
  return text;
}

}  // namespace orvane
