#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "foundation/main_actor.h"
#include "platform/ek_event_store.h"

namespace orvane::fakes {

// Calendars in memory. What is asked of it stands in `calls`; completions come in later turns of
// the loop, or when the test delivers them.
class MemoryEventStore final : public EKEventStore {
 public:
  explicit MemoryEventStore(MainActor& actor) : actor_(actor) {}

  struct Access {
    EKAuthorizationStatus status = EKAuthorizationStatus::fullAccess;
    // What the user answers when asked, or how the asking fails.
    bool grants = true;
    std::optional<EKError> error;
  };
  Access eventAccess;
  Access reminderAccess;
  std::optional<std::vector<EKCalendar>> eventCalendars = std::vector<EKCalendar>{};
  std::optional<std::vector<EKCalendar>> reminderLists = std::vector<EKCalendar>{};
  std::vector<EKEvent> storedEvents;
  std::vector<EKReminder> storedReminders;
  // Whether fetchReminders() answers with no list at all.
  bool remindersMissing = false;
  // Whether completed reminders slip through fetchReminders().
  bool returnsCompleted = false;
  // While set, completions wait for deliver().
  bool holdsCompletions = false;

  std::vector<std::string> calls;
  std::vector<EKEventPredicate> eventPredicates;
  std::vector<EKReminderPredicate> reminderPredicates;

  [[nodiscard]] EKAuthorizationStatus authorizationStatus(EKEntityType type) const override {
    return accessOf(type).status;
  }
  void requestFullAccessToEvents(AccessCompletion completion) override {
    calls.emplace_back("request events");
    answer(eventAccess, std::move(completion));
  }
  void requestFullAccessToReminders(AccessCompletion completion) override {
    calls.emplace_back("request reminders");
    answer(reminderAccess, std::move(completion));
  }
  [[nodiscard]] std::optional<std::vector<EKCalendar>> calendars(EKEntityType type) override {
    const bool forEvents = type == EKEntityType::event;
    calls.emplace_back(forEvents ? "calendars events" : "calendars reminders");
    return forEvents ? eventCalendars : reminderLists;
  }
  [[nodiscard]] std::vector<EKEvent> events(const EKEventPredicate& predicate) override {
    calls.emplace_back("events");
    eventPredicates.push_back(predicate);
    std::vector<EKEvent> found;
    std::copy_if(storedEvents.begin(), storedEvents.end(), std::back_inserter(found),
                 [&](const EKEvent& event) { return matches(event, predicate); });
    return found;
  }
  void fetchReminders(const EKReminderPredicate& predicate,
                      RemindersCompletion completion) override {
    calls.emplace_back("fetch reminders");
    reminderPredicates.push_back(predicate);
    std::optional<std::vector<EKReminder>> found;
    if (!remindersMissing) found = openReminders(predicate);
    complete([completion = std::move(completion), found] { completion(found); });
  }

  // Delivers what holdsCompletions kept back.
  void deliver() {
    for (auto& completion : std::exchange(held_, {})) completion();
  }
  [[nodiscard]] std::size_t heldCompletions() const { return held_.size(); }
  [[nodiscard]] long countOf(const std::string& call) const {
    return std::count(calls.begin(), calls.end(), call);
  }

 private:
  [[nodiscard]] const Access& accessOf(EKEntityType type) const {
    return type == EKEntityType::event ? eventAccess : reminderAccess;
  }
  void answer(Access& access, AccessCompletion completion) {
    if (!access.error) {
      access.status =
          access.grants ? EKAuthorizationStatus::fullAccess : EKAuthorizationStatus::denied;
    }
    complete([completion = std::move(completion), granted = access.grants, error = access.error] {
      completion(granted, error);
    });
  }
  void complete(std::function<void()> completion) {
    if (holdsCompletions) {
      held_.push_back(std::move(completion));
    } else {
      actor_.post(std::move(completion));
    }
  }
  static bool selected(const std::shared_ptr<const EKCalendar>& calendar,
                       const std::optional<std::vector<std::string>>& identifiers) {
    if (!identifiers || !calendar) return true;
    return std::find(identifiers->begin(), identifiers->end(), calendar->calendarIdentifier) !=
           identifiers->end();
  }
  static bool matches(const EKEvent& event, const EKEventPredicate& predicate) {
    if (!selected(event.calendar, predicate.calendarIdentifiers)) return false;
    if (predicate.calendarIdentifiers && predicate.calendarIdentifiers->empty()) return false;
    if (!event.startDate || !event.endDate) return true;
    return *event.startDate < predicate.end &&
           (*event.endDate > predicate.start || *event.startDate >= predicate.start);
  }
  [[nodiscard]] std::vector<EKReminder> openReminders(const EKReminderPredicate& predicate) const {
    std::vector<EKReminder> found;
    std::copy_if(storedReminders.begin(), storedReminders.end(), std::back_inserter(found),
                 [&](const EKReminder& reminder) {
                   return (returnsCompleted || !reminder.isCompleted) &&
                          selected(reminder.calendar, predicate.calendarIdentifiers);
                 });
    return found;
  }

  MainActor& actor_;
  std::vector<std::function<void()>> held_;
};

}  // namespace orvane::fakes
