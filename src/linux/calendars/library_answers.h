#pragma once

#include <vector>

#include "foundation/date.h"
#include "linux/calendars/calendar_provider.h"
#include "linux/calendars/folder_library.h"
#include "linux/calendars/item_shelf.h"

namespace orvane::host {

// What is held of calendars, as the store tells it. Identifiers of items and occurrences are unique
// and the same in every run: the calendar's, the item's UID, and for an occurrence the start that
// it had originally. Where one UID stands for several items of a calendar all are shown, and the
// later ones are numbered.

// One calendar and what is held of it; the items belong to somebody else.
struct CalendarContent {
  EKCalendar calendar;
  ShelfItems items;
};

// To be called, and its result used, under the library's lock.
std::vector<CalendarContent> contentsOf(const FolderLibrary& library);

// A calendar is listed as a reminder list when it holds reminders, and as a calendar when it holds
// events or neither. One of which nothing can be read is not listed.
std::vector<EKCalendar> listedIn(const std::vector<CalendarContent>& contents, EKEntityType type);

// Those that overlap [start, end), by start, then title.
std::vector<EKEvent> eventsIn(const std::vector<CalendarContent>& contents, Date start, Date end,
                              const CalendarSelection& selection);

std::vector<EKReminder> remindersIn(const std::vector<CalendarContent>& contents,
                                    const CalendarSelection& selection);

}  // namespace orvane::host
