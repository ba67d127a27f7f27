#include "dashboard/reminders_card.h"

#include <algorithm>

#include "dashboard/card_parts.h"
#include "dashboard/empty_state_view.h"
#include "dashboard/reminder_row.h"

namespace orvane {

std::vector<Date> RemindersCard::countdownDates() const {
  std::vector<Date> dates;
  for (std::size_t index = 0; index < std::min(reminders.size(), mostRows); ++index) {
    if (reminders[index].dueDate) dates.push_back(*reminders[index].dueDate);
  }
  return dates;
}

View RemindersCard::body(const CardEnvironment& environment) const {
  const PanelHeader header{"Reminders", static_cast<std::int64_t>(reminders.size())};
  const auto list = [&]() -> View {
    if (authorizationState.kind() == EventKitAuthorizationState::Kind::denied) {
      return EmptyStateView{"Reminders access needed", authorizationState.message(), "checklist"}
          .body(environment);
    }
    if (reminders.empty()) {
      return EmptyStateView{"No pending reminders", "Incomplete Apple Reminders will appear here.",
                            "checkmark.circle"}
          .body(environment);
    }
    return firstRows(reminders, mostRows, [&](const DashboardReminder& reminder) {
      return ReminderRow{reminder, now}.body(environment);
    });
  };
  return listCard(header, list(), environment).named("RemindersCard");
}

}  // namespace orvane
