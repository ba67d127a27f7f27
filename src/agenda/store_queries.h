#pragma once

#include <optional>
#include <string>
#include <vector>

#include "agenda/records.h"
#include "foundation/date.h"
#include "platform/calendar.h"
#include "platform/ek_event_store.h"
#include "platform/locale.h"

// What is asked of the calendar store and made of its answers. These functions may take long with
// many items and run on workers.
namespace orvane {

struct EventWindow {
  Date start;
  Date end;
};

// From the start of today to the same time seven days later; nothing where that cannot be formed.
[[nodiscard]] std::optional<EventWindow> eventWindow(const Calendar& calendar, Date now);

// The calendars or reminder lists of the store.
struct CalendarListing {
  std::vector<std::string> identifiers;       // in the store's order
  std::vector<EventKitSourceOption> options;  // by title
};
[[nodiscard]] CalendarListing listCalendars(EKEventStore& store, EKEntityType type,
                                            const Locale& locale);

// The events of today, also those that are over, and those of the later days that are still to
// begin; all-day events first, then by start.
[[nodiscard]] std::vector<DashboardEvent> relevantEvents(EKEventStore& store,
                                                         const EKEventPredicate& predicate,
                                                         const Calendar& calendar, Date now);

// Those that are not completed: dated ones first, by date; then the others from the greatest
// priority number to the least, and by title.
[[nodiscard]] std::vector<DashboardReminder> openReminders(std::vector<EKReminder> reminders,
                                                           const Calendar& calendar,
                                                           const Locale& locale);

}  // namespace orvane
