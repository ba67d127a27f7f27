// One refresh: what is fetched from the store, and how it becomes the published agenda.
#include <utility>

#include "agenda/next_deadline.h"
#include "agenda/selection.h"
#include "agenda/store_queries.h"
#include "agenda/task_manager.h"
#include "foundation/task_waiting.h"

namespace orvane {
namespace {

template <class Item>
Task<std::vector<Item>> nothing() {
  co_return std::vector<Item>();
}

Task<CalendarListing> listOnWorker(MainActor& actor, std::shared_ptr<EKEventStore> store,
                                   EKEntityType type, const Locale& locale) {
  std::function<CalendarListing()> list = [store, type, &locale] {
    return listCalendars(*store, type, locale);
  };
  auto listing = onWorker(actor, std::move(list));
  co_return co_await listing;
}

struct Agenda {
  std::vector<DashboardEvent> events;
  std::vector<DashboardReminder> reminders;
};

// What lies in the selected calendars and lists, as they are selected now. Both this and the
// destruction of thousands of items take longer than the main thread may be kept.
Task<std::shared_ptr<Agenda>> selectOnWorker(MainActor& actor, std::shared_ptr<Agenda> fetched,
                                             std::shared_ptr<DashboardSettings> settings) {
  std::function<std::shared_ptr<Agenda>()> select = [fetched,
                                                     calendars = *settings->selectedCalendarIDs,
                                                     lists = *settings->selectedReminderListIDs] {
    fetched->events = filterEvents(std::move(fetched->events), calendars);
    fetched->reminders = filterReminders(std::move(fetched->reminders), lists);
    return fetched;
  };
  auto selected = onWorker(actor, std::move(select));
  co_return co_await selected;
}

void destroyOnWorker(MainActor& actor, std::shared_ptr<Agenda> agenda) {
  actor.runOnWorker([agenda] {
    agenda->events.clear();
    agenda->reminders.clear();
  });
}

}  // namespace

Task<void> TaskManager::refreshData(Self self, bool eventsAllowed, bool remindersAllowed) {
  const Environment& environment = self->environment_;
  self->isRefreshing = true;
  ChildTask<std::vector<DashboardEvent>> eventFetch(
      environment.mainActor, eventsAllowed ? fetchRelevantEvents(self) : nothing<DashboardEvent>());
  ChildTask<std::vector<DashboardReminder>> reminderFetch(
      environment.mainActor,
      remindersAllowed ? fetchIncompleteReminders(self) : nothing<DashboardReminder>());
  const auto fetched = std::make_shared<Agenda>();
  fetched->events = co_await eventFetch.value();
  fetched->reminders = co_await reminderFetch.value();
  auto selecting = selectOnWorker(environment.mainActor, fetched, self->settings_);
  const auto agenda = co_await selecting;

  agenda->events = self->events.exchange(std::move(agenda->events));
  agenda->reminders = self->reminders.exchange(std::move(agenda->reminders));
  destroyOnWorker(environment.mainActor, agenda);
  self->nextDeadline = findNextDeadline(*self->events, *self->reminders, *self->settings_,
                                        environment.locale, environment.mainActor.now());
  self->isRefreshing = false;
  self->lastRefreshDate = environment.mainActor.now();
}

Task<std::vector<DashboardEvent>> TaskManager::fetchRelevantEvents(Self self) {
  const Calendar& calendar = self->environment_.calendar;
  MainActor& actor = self->environment_.mainActor;
  const auto window = eventWindow(calendar, actor.now());
  if (!window) co_return std::vector<DashboardEvent>();

  auto listing = co_await listOnWorker(actor, self->eventStore_, EKEntityType::event,
                                       self->environment_.locale);
  self->calendarOptions = std::move(listing.options);

  // All calendars there are, also when there are none: the selection is applied afterwards.
  const EKEventPredicate predicate{window->start, window->end, std::move(listing.identifiers)};
  std::function<std::vector<DashboardEvent>()> query = [store = self->eventStore_, predicate,
                                                        &calendar, now = actor.now()] {
    return relevantEvents(*store, predicate, calendar, now);
  };
  auto events = onWorker(actor, std::move(query));
  co_return co_await events;
}

Task<std::vector<DashboardReminder>> TaskManager::fetchIncompleteReminders(Self self) {
  using Answer = std::optional<std::vector<EKReminder>>;
  const Environment& environment = self->environment_;
  MainActor& actor = environment.mainActor;
  auto listing =
      co_await listOnWorker(actor, self->eventStore_, EKEntityType::reminder, environment.locale);
  spawn(actor, publishReminderListOptions(self, std::move(listing.options)));

  // Due at any time or none, and where there are no lists, in any list.
  EKReminderPredicate predicate;
  if (!listing.identifiers.empty()) predicate.calendarIdentifiers = std::move(listing.identifiers);
  Continuation<Answer> fetch(actor, [store = self->eventStore_, predicate](auto resume) {
    store->fetchReminders(predicate, std::move(resume));
  });
  const auto answer = std::make_shared<Answer>(co_await fetch);

  std::function<std::vector<DashboardReminder>()> convert = [answer,
                                                             &calendar = environment.calendar,
                                                             &locale = environment.locale] {
    return openReminders(std::move(*answer).value_or(std::vector<EKReminder>()), calendar, locale);
  };
  auto reminders = onWorker(actor, std::move(convert));
  co_return co_await reminders;
}

Task<void> TaskManager::publishReminderListOptions(WeakSelf weak,
                                                   std::vector<EventKitSourceOption> options) {
  if (const Self self = weak.lock()) self->reminderListOptions = std::move(options);
  co_return;
}

}  // namespace orvane
