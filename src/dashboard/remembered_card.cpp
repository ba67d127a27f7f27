#include "dashboard/remembered_card.h"

#include "dashboard/formatting.h"

namespace orvane {

std::vector<CountdownLook> countdownLooks(const std::vector<Date>& dates, Date now,
                                          const DashboardAppearance& settings) {
  std::vector<CountdownLook> looks;
  looks.reserve(dates.size());
  for (const Date date : dates) {
    looks.push_back({shortETA(date, now), countdownColor(date, now, settings)});
  }
  return looks;
}

}  // namespace orvane
