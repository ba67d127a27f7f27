#include "dashboard/today.h"

namespace orvane {
namespace {

// The first instant of the day after the one that begins at `start`. A day may begin after
// midnight, where the clocks skip it, so a day later is not yet the next day's start.
Date endOfDay(Date start, const Calendar& calendar) {
  const auto dayLater = calendar.dateByAddingDays(1, start);
  return dayLater ? calendar.startOfDay(*dayLater) : start + 86400;
}

}  // namespace

EventsByDay eventsByDay(const std::vector<DashboardEvent>& events, Date now,
                        const Calendar& calendar) {
  const Date start = calendar.startOfDay(now);
  const Date end = endOfDay(start, calendar);
  EventsByDay result;
  for (const auto& event : events) {
    if (event.startDate >= start && event.startDate < end) {
      result.today.emplace_back(event);
    } else if (event.startDate > now) {
      result.later.emplace_back(event);
    }
  }
  return result;
}

}  // namespace orvane
