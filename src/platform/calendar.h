#pragma once

#include <optional>

#include "foundation/date.h"
#include "platform/date_components.h"

namespace orvane {

// The user's current calendar and time zone, following system changes while the program runs.
// May be called from any thread.
class Calendar {
 public:
  virtual ~Calendar() = default;

  // The first instant of the local day that holds `date`; not always midnight.
  [[nodiscard]] virtual Date startOfDay(Date date) const = 0;
  // The same local time of day `days` days later (earlier, when negative), moved forward where a
  // clock change skips it. Nothing where the result cannot be formed.
  [[nodiscard]] virtual std::optional<Date> dateByAddingDays(int days, Date date) const = 0;
  [[nodiscard]] virtual bool isDateInToday(Date date) const = 0;
  // What the components denote in this calendar; their own zone, where they have one, counts, and
  // absent times of day are zero. Nothing where they name no date.
  [[nodiscard]] virtual std::optional<Date> date(const DateComponents& components) const = 0;
  // `components.date`: what they denote in the calendar that they carry themselves; nothing when
  // they carry none.
  [[nodiscard]] virtual std::optional<Date> dateOfComponents(
      const DateComponents& components) const = 0;
};

}  // namespace orvane
