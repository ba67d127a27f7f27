// platform/ lists what the logic asks of the world, as narrow interfaces under the platform's own
// names. It is headers only and standard C++ only; src/linux implements it for the real desktop,
// tests/fakes in memory.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/date.h"
#include "platform/date_components.h"

namespace orvane {

enum class EKEntityType : int { event = 0, reminder = 1 };

enum class EKAuthorizationStatus : int {
  notDetermined = 0,
  restricted = 1,
  denied = 2,
  fullAccess = 3,
  writeOnly = 4,
};

// One calendar or reminder list. A folder that holds both kinds appears as both, under one
// identifier.
struct EKCalendar {
  std::string calendarIdentifier;  // stable across runs
  std::string title;

  friend bool operator==(const EKCalendar&, const EKCalendar&) = default;
};

// One occurrence. Calendars are shared by the many items that lie in them.
struct EKEvent {
  std::optional<std::string> eventIdentifier;  // unique and stable per occurrence
  std::string calendarItemIdentifier;          // shared by all occurrences of one item
  std::optional<std::string> title;
  std::shared_ptr<const EKCalendar> calendar;  // may be null
  std::optional<Date> startDate;
  std::optional<Date> endDate;
  bool isAllDay = false;
};

struct EKReminder {
  std::string calendarItemIdentifier;
  std::optional<std::string> title;
  std::shared_ptr<const EKCalendar> calendar;  // may be null
  std::optional<DateComponents> dueDateComponents;
  std::int64_t priority = 0;
  bool isCompleted = false;
};

// A failed request; the text is a sentence for a person.
struct EKError {
  std::string localizedDescription;
};

// Events that overlap [start, end). No list of calendars means all; an empty list means none.
struct EKEventPredicate {
  Date start;
  Date end;
  std::optional<std::vector<std::string>> calendarIdentifiers;
};

// Incomplete reminders; an absent bound is open, and with both absent undated reminders are
// included. No list of calendars means all lists.
struct EKReminderPredicate {
  std::optional<Date> dueDateStarting;
  std::optional<Date> dueDateEnding;
  std::optional<std::vector<std::string>> calendarIdentifiers;
};

// All that the desktop knows of the user's calendars and reminder lists, from every provider.
//
// calendars(for) and events(matching) may be called from any thread and may block; the rest is for
// the main thread. Completions are called exactly once, from any thread, never before the call
// has returned. Changes are announced as `EKEventStoreChanged` on the notification centre.
class EKEventStore {
 public:
  using AccessCompletion = std::function<void(bool granted, std::optional<EKError> error)>;
  using RemindersCompletion = std::function<void(std::optional<std::vector<EKReminder>>)>;

  virtual ~EKEventStore() = default;

  // Never prompts.
  [[nodiscard]] virtual EKAuthorizationStatus authorizationStatus(EKEntityType type) const = 0;
  virtual void requestFullAccessToEvents(AccessCompletion completion) = 0;
  virtual void requestFullAccessToReminders(AccessCompletion completion) = 0;

  // In the provider's order; nothing when the store cannot tell.
  [[nodiscard]] virtual std::optional<std::vector<EKCalendar>> calendars(EKEntityType type) = 0;
  [[nodiscard]] virtual std::vector<EKEvent> events(const EKEventPredicate& predicate) = 0;
  virtual void fetchReminders(const EKReminderPredicate& predicate,
                              RemindersCompletion completion) = 0;
};

// Posted at most 100 ms after the last of a burst of changes.
inline constexpr const char* EKEventStoreChanged = "EKEventStoreChanged";

}  // namespace orvane
