#include "dashboard/event_row.h"

#include "dashboard/row_parts.h"
#include "dashboard/time_rail.h"

namespace orvane {

View EventRow::body(const CardEnvironment& environment) const {
  const std::string time =
      event.isAllDay ? "All day" : environment.locale.timeShortened(event.startDate);
  const auto etaDate = event.isAllDay ? std::nullopt : std::optional(event.startDate);
  return hstack({.spacing = rowLeadingSpacing},
                {TimeRail{time, Color::cyan()}.body(environment),
                 rowTexts(rowTitle(event.title, etaDate, now, environment),
                          rowDetail(event.calendarTitle, environment))});
}

}  // namespace orvane
