#include "agenda/store_queries.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "agenda/conversions.h"
#include "foundation/fatal_error.h"

namespace orvane {
namespace {

constexpr int daysAhead = 7;

Date startOf(const EKEvent& event) {
  if (!event.startDate) fatalError("An event has no start.");
  return *event.startDate;
}

// The cheap comparison first: only what has begun needs the calendar.
bool isRelevant(const EKEvent& event, const Calendar& calendar, Date now) {
  const Date start = startOf(event);
  return start > now || calendar.isDateInToday(start);
}

bool eventGoesFirst(const EKEvent& a, const EKEvent& b) {
  if (a.isAllDay != b.isAllDay) return a.isAllDay;
  return startOf(a) < startOf(b);
}

// A reminder beside the date by which it is sorted. That date is read in the calendar that the
// components carry, unlike the date that is shown.
struct SortedReminder {
  std::optional<Date> date;
  EKReminder reminder;

  [[nodiscard]] std::string_view title() const {
    return reminder.title ? std::string_view(*reminder.title) : std::string_view();
  }
};

bool reminderGoesFirst(const SortedReminder& a, const SortedReminder& b, const Locale& locale) {
  if (a.date && b.date) return *a.date < *b.date;
  if (a.date || b.date) return a.date.has_value();
  if (a.reminder.priority != b.reminder.priority) return a.reminder.priority > b.reminder.priority;
  return locale.localizedCaseInsensitiveCompare(a.title(), b.title()) < 0;
}

std::vector<SortedReminder> withSortDates(std::vector<EKReminder> reminders,
                                          const Calendar& calendar) {
  std::vector<SortedReminder> result;
  result.reserve(reminders.size());
  for (auto& reminder : reminders) {
    const auto date = reminder.dueDateComponents
                          ? calendar.dateOfComponents(*reminder.dueDateComponents)
                          : std::nullopt;
    result.push_back({date, std::move(reminder)});
  }
  return result;
}

}  // namespace

std::optional<EventWindow> eventWindow(const Calendar& calendar, Date now) {
  const Date start = calendar.startOfDay(now);
  const auto end = calendar.dateByAddingDays(daysAhead, start);
  return end ? std::optional(EventWindow{start, *end}) : std::nullopt;
}

CalendarListing listCalendars(EKEventStore& store, EKEntityType type, const Locale& locale) {
  auto calendars = store.calendars(type).value_or(std::vector<EKCalendar>());
  CalendarListing listing;
  for (const auto& calendar : calendars) listing.identifiers.push_back(calendar.calendarIdentifier);
  std::stable_sort(calendars.begin(), calendars.end(), [&](const auto& a, const auto& b) {
    return locale.localizedCaseInsensitiveCompare(a.title, b.title) < 0;
  });
  for (auto& calendar : calendars) {
    listing.options.push_back(
        {std::move(calendar.calendarIdentifier), std::move(calendar.title), type});
  }
  return listing;
}

std::vector<DashboardEvent> relevantEvents(EKEventStore& store, const EKEventPredicate& predicate,
                                           const Calendar& calendar, Date now) {
  auto events = store.events(predicate);
  std::erase_if(events, [&](const EKEvent& event) { return !isRelevant(event, calendar, now); });
  std::stable_sort(events.begin(), events.end(), eventGoesFirst);
  std::vector<DashboardEvent> records;
  records.reserve(events.size());
  std::transform(events.begin(), events.end(), std::back_inserter(records), dashboardEvent);
  return records;
}

std::vector<DashboardReminder> openReminders(std::vector<EKReminder> reminders,
                                             const Calendar& calendar, const Locale& locale) {
  std::erase_if(reminders, [](const EKReminder& reminder) { return reminder.isCompleted; });
  auto sorted = withSortDates(std::move(reminders), calendar);
  std::stable_sort(sorted.begin(), sorted.end(),
                   [&](const auto& a, const auto& b) { return reminderGoesFirst(a, b, locale); });
  std::vector<DashboardReminder> records;
  records.reserve(sorted.size());
  for (const auto& entry : sorted) records.push_back(dashboardReminder(entry.reminder, calendar));
  return records;
}

}  // namespace orvane
