// linux/calendars/ is the desktop's calendar store: one store over any number of providers, of
// which folders of iCalendar files are the one that is always there. It only ever reads.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "foundation/date.h"
#include "platform/ek_event_store.h"

namespace orvane::host {

// What a provider has of one kind of items.
enum class KindAccess {
  nothing,   // there is nothing of the kind: not a refusal
  readable,  // at least a part of what there is can be read
  refused,   // something is there, and nothing of it can be read
};

struct ProviderState {
  KindAccess events = KindAccess::nothing;
  KindAccess reminders = KindAccess::nothing;
  // There is no such provider on this system: it neither has nor fails anything.
  bool isAbsent = false;
  // Set when the provider can do nothing at all, for either kind: a sentence for a person.
  std::optional<std::string> failure = std::nullopt;

  friend bool operator==(const ProviderState&, const ProviderState&) = default;
};

// No list means all calendars, an empty one none.
using CalendarSelection = std::optional<std::vector<std::string>>;

// One source of calendars behind the store.
class CalendarProvider {
 public:
  using Callback = std::function<void()>;

  virtual ~CalendarProvider() = default;

  // Begins to look and to watch; called once, on the main thread, before anything else. `ready` is
  // called once, when state() is known, or when that takes too long; `changed` after every burst of
  // changes. Both are called on the main thread, in later turns.
  virtual void start(Callback ready, Callback changed) = 0;
  // Ends watching, on the main thread: no callback is called any more, and calls that block on
  // worker threads return soon. The provider may then be destroyed on any thread.
  virtual void stop() = 0;

  // Any thread, never blocks on files.
  [[nodiscard]] virtual ProviderState state() const = 0;

  // These may block, for a few seconds at the worst; they are for worker threads.
  [[nodiscard]] virtual std::vector<EKCalendar> calendars(EKEntityType type) = 0;
  // Ordered by start.
  [[nodiscard]] virtual std::vector<EKEvent> events(Date start, Date end,
                                                    const CalendarSelection& selection) = 0;
  [[nodiscard]] virtual std::vector<EKReminder> openReminders(
      const CalendarSelection& selection) = 0;
};

}  // namespace orvane::host
