#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "agenda/records.h"
#include "foundation/main_actor.h"
#include "foundation/observable.h"
#include "foundation/subscription.h"
#include "foundation/task.h"
#include "platform/calendar.h"
#include "platform/ek_event_store.h"
#include "platform/locale.h"
#include "platform/notification_center.h"
#include "settings/dashboard_settings.h"

namespace orvane {

// Owns what the board shows from the calendar store, and keeps it current: it fetches at the start,
// after a change in the store or the settings, when asked, and just after each local midnight.
// Main thread only; querying, converting and sorting happen on workers.
class TaskManager : public ObservableObject, public std::enable_shared_from_this<TaskManager> {
 public:
  // What the manager asks of the world. Everything in it must outlive the loop's tasks.
  struct Environment {
    MainActor& mainActor;
    NotificationCenter& notificationCenter;
    const Calendar& calendar;
    const Locale& locale;
  };

  // Fetches nothing and asks for nothing yet, but listens for changes at once.
  [[nodiscard]] static std::shared_ptr<TaskManager> create(
      std::shared_ptr<DashboardSettings> settings, std::shared_ptr<EKEventStore> eventStore,
      Environment environment);
  // Cancels what is pending. A refresh that is under way holds its manager, so there is none.
  ~TaskManager();

  // Only what the user selected, never the whole answer of the store. For others to read.
  Published<std::vector<DashboardEvent>> events{*this, {}};
  Published<std::vector<DashboardReminder>> reminders{*this, {}};
  // All there is to select from, by title.
  Published<std::vector<EventKitSourceOption>> calendarOptions{*this, {}};
  Published<std::vector<EventKitSourceOption>> reminderListOptions{*this, {}};
  // As of the last refresh; it may have passed since.
  Published<std::optional<DashboardDeadline>> nextDeadline{*this, std::nullopt};
  Published<EventKitAuthorizationState> calendarAuthorizationState{
      *this, EventKitAuthorizationState::unknown()};
  Published<EventKitAuthorizationState> reminderAuthorizationState{
      *this, EventKitAuthorizationState::unknown()};
  Published<bool> isRefreshing{*this, false};
  Published<std::optional<Date>> lastRefreshDate{*this, std::nullopt};

  // Asks for access, loads for the first time and begins to follow the days. May be called again:
  // what was begun is then begun anew.
  void start();
  // A refresh a quarter of a second after the last of these calls.
  void scheduleRefresh();
  // A refresh that asks the user for access where that was never decided. The task holds the
  // manager.
  [[nodiscard]] Task<void> requestAccessAndRefresh();
  // A refresh with the access there is; never prompts. The task holds the manager.
  [[nodiscard]] Task<void> refreshData();

 private:
  using Self = std::shared_ptr<TaskManager>;
  using WeakSelf = std::weak_ptr<TaskManager>;

  TaskManager(std::shared_ptr<DashboardSettings> settings, std::shared_ptr<EKEventStore> eventStore,
              Environment environment);

  // The refresh cycle.
  void subscribeToChanges();
  void scheduleRefreshAtNextDay();
  static Task<void> firstRefresh(WeakSelf weak);
  static Task<void> delayedRefresh(WeakSelf weak, Environment environment);
  static Task<void> refreshEachDay(WeakSelf weak, Environment environment);
  static Task<void> refreshData(Self self, bool eventsAllowed, bool remindersAllowed);

  // Access to the store.
  static Task<void> requestAccessAndRefresh(Self self);
  static Task<void> refreshDataWithoutAsking(Self self);
  static Task<std::vector<DashboardEvent>> fetchRelevantEvents(Self self);
  static Task<std::vector<DashboardReminder>> fetchIncompleteReminders(Self self);
  static Task<void> publishReminderListOptions(WeakSelf weak,
                                               std::vector<EventKitSourceOption> options);
  void publishAccessFailure(const EKError& error);
  void clearLists();

  const std::shared_ptr<EKEventStore> eventStore_;
  const std::shared_ptr<DashboardSettings> settings_;
  const Environment environment_;
  std::vector<Subscription> cancellables_;
  TaskHandle refreshTask_;
  TaskHandle dayBoundaryTask_;
};

}  // namespace orvane
