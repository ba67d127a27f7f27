#pragma once

#include <vector>

#include "foundation/date.h"
#include "linux/calendars/calendar_provider.h"
#include "linux/calendars/folder_library.h"

namespace orvane::host {

// What the library holds, as the store tells it. Identifiers of items and occurrences are unique
// and the same in every run: the calendar's, the item's UID, and for an occurrence the start that
// it had originally. Where one UID stands for several items of a calendar all are shown, and the
// later ones are numbered.

// A collection is listed as a reminder list when it holds reminders, and as a calendar when it
// holds events or neither. One of which nothing can be read is not listed.
std::vector<EKCalendar> calendarsIn(const FolderLibrary& library, EKEntityType type);

// Those that overlap [start, end), by start, then title.
std::vector<EKEvent> eventsIn(const FolderLibrary& library, Date start, Date end,
                              const CalendarSelection& selection);

std::vector<EKReminder> remindersIn(const FolderLibrary& library,
                                    const CalendarSelection& selection);

}  // namespace orvane::host
