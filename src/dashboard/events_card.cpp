#include "dashboard/events_card.h"

#include <algorithm>

#include "dashboard/card_parts.h"
#include "dashboard/empty_state_view.h"
#include "dashboard/event_row.h"

namespace orvane {

std::string EventsCard::nextEventText(const Locale& locale) const {
  const auto timed = std::find_if(upcomingEvents.begin(), upcomingEvents.end(),
                                  [](const DashboardEvent& event) { return !event.isAllDay; });
  if (timed == upcomingEvents.end()) return "Your calendar is clear.";
  const DashboardEvent& next = *timed;
  return "Next: " + next.title + " " + locale.dateAbbreviatedTimeShortened(next.startDate);
}

std::vector<Date> EventsCard::countdownDates() const {
  std::vector<Date> dates;
  for (std::size_t index = 0; index < std::min(events.size(), mostRows); ++index) {
    const DashboardEvent& event = events[index];
    if (!event.isAllDay) dates.push_back(event.startDate);
  }
  return dates;
}

View EventsCard::body(const CardEnvironment& environment) const {
  const PanelHeader header{title, static_cast<std::int64_t>(events.size())};
  const auto list = [&]() -> View {
    if (authorizationState.kind() == EventKitAuthorizationState::Kind::denied) {
      return EmptyStateView{"Calendar access needed", authorizationState.message(),
                            "calendar.badge.exclamationmark"}
          .body(environment);
    }
    if (events.empty()) {
      return EmptyStateView{"No events today", nextEventText(environment.locale), "calendar"}.body(
          environment);
    }
    return firstRows(events, mostRows, [&](const DashboardEvent& event) {
      return EventRow{event, now}.body(environment);
    });
  };
  return listCard(header, list(), environment).named("EventsCard");
}

}  // namespace orvane
