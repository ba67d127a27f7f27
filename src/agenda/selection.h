#pragma once

#include <utility>
#include <vector>

#include "agenda/records.h"
#include "settings/dashboard_settings.h"

namespace orvane {

// The items that lie in a selected calendar or list, in the order given. An empty selection means
// all of them.
template <class Item>
[[nodiscard]] std::vector<Item> keepSelected(std::vector<Item> items, const TextSet& selection) {
  if (selection.empty()) return items;
  std::erase_if(items,
                [&](const Item& item) { return !selection.contains(item.calendarIdentifier); });
  return items;
}

[[nodiscard]] inline std::vector<DashboardEvent> filterEvents(std::vector<DashboardEvent> events,
                                                              const TextSet& selectedCalendarIDs) {
  return keepSelected(std::move(events), selectedCalendarIDs);
}

[[nodiscard]] inline std::vector<DashboardReminder> filterReminders(
    std::vector<DashboardReminder> reminders, const TextSet& selectedReminderListIDs) {
  return keepSelected(std::move(reminders), selectedReminderListIDs);
}

}  // namespace orvane
