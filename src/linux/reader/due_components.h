#pragma once

#include "linux/reader/time_reading.h"
#include "platform/date_components.h"

namespace orvane::ical {

// As they were written down, in the Gregorian calendar: a date has no time of day, and neither it
// nor a floating time has a zone. A zone that only the file knows, or that the file defines in
// another way than the system, becomes UTC, so that the instant is right.
DateComponents dueComponents(const ItemTime& due, const TimeReading& times);

}  // namespace orvane::ical
