#pragma once

#include <memory>
#include <string>

#include "linux/locale/region.h"
#include "platform/calendar.h"

namespace orvane::host {

// The Gregorian calendar in the region's zone. Components count in the calendar that they name, in
// the Gregorian one where they name none. They denote nothing unless year, month and day are there
// and every field is in its range (a 30th of February is no date; second 60 is the next minute's
// first). A time of day that a clock change skips is moved forward by the gap, one that comes twice
// is the first, and a zone that nobody knows is taken for local time.
class SystemCalendar : public Calendar {
 public:
  // The first instant of the local day after the one that holds `date`.
  [[nodiscard]] virtual Date startOfNextDay(Date date) const = 0;
  // What the zone is called: an IANA name, or ICU's own name for an offset where there is none.
  [[nodiscard]] virtual std::string timeZoneName() const = 0;
  // Looks again which zone the system is in. Call it after any news of the zone. Any thread.
  virtual void systemChanged() = 0;
};

[[nodiscard]] std::unique_ptr<SystemCalendar> makeCalendar(Region region = {});

}  // namespace orvane::host
