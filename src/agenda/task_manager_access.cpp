// Which kinds of items may be read, asking the user or not, before a refresh.

#include "agenda/store_access.h"
#include "agenda/task_manager.h"

namespace orvane {
namespace {

EventKitAuthorizationState stateOf(bool allowed, const char* refusal) {
  return allowed ? EventKitAuthorizationState::authorized()
                 : EventKitAuthorizationState::denied(refusal);
}

}  // namespace

Task<void> TaskManager::requestAccessAndRefresh() {
  return requestAccessAndRefresh(shared_from_this());
}

Task<void> TaskManager::refreshData() { return refreshDataWithoutAsking(shared_from_this()); }

Task<void> TaskManager::requestAccessAndRefresh(Self self) {
  MainActor& actor = self->environment_.mainActor;
  self->isRefreshing = true;
  const auto events = co_await requestFullAccess(actor, self->eventStore_, EKEntityType::event);
  if (events.error) co_return self->publishAccessFailure(*events.error);
  const auto reminders =
      co_await requestFullAccess(actor, self->eventStore_, EKEntityType::reminder);
  if (reminders.error) co_return self->publishAccessFailure(*reminders.error);

  self->calendarAuthorizationState = stateOf(events.granted, "Calendar access was not granted.");
  self->reminderAuthorizationState =
      stateOf(reminders.granted, "Reminders access was not granted.");
  if (events.granted || reminders.granted) {
    co_await refreshData(self, events.granted, reminders.granted);
  } else {
    self->clearLists();
  }
  self->isRefreshing = false;
}

// Whichever request failed, nothing is known of either kind.
void TaskManager::publishAccessFailure(const EKError& error) {
  calendarAuthorizationState = EventKitAuthorizationState::denied(error.localizedDescription);
  reminderAuthorizationState = EventKitAuthorizationState::denied(error.localizedDescription);
  clearLists();
  isRefreshing = false;
}

Task<void> TaskManager::refreshDataWithoutAsking(Self self) {
  constexpr auto fullAccess = EKAuthorizationStatus::fullAccess;
  const bool eventsAllowed =
      self->eventStore_->authorizationStatus(EKEntityType::event) == fullAccess;
  const bool remindersAllowed =
      self->eventStore_->authorizationStatus(EKEntityType::reminder) == fullAccess;
  self->calendarAuthorizationState =
      stateOf(eventsAllowed, "Calendar access is required to show events.");
  self->reminderAuthorizationState =
      stateOf(remindersAllowed, "Reminders access is required to show reminders.");
  if (!eventsAllowed && !remindersAllowed) co_return self->clearLists();
  co_await refreshData(self, eventsAllowed, remindersAllowed);
}

void TaskManager::clearLists() {
  events = std::vector<DashboardEvent>();
  reminders = std::vector<DashboardReminder>();
  nextDeadline = std::optional<DashboardDeadline>();
}

}  // namespace orvane
