#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "foundation/main_actor.h"
#include "linux/calendars/calendar_provider.h"
#include "platform/ek_event_store.h"
#include "platform/notification_center.h"

namespace orvane::host {

// The store, and what the host tells it.
class EventStore : public EKEventStore {
 public:
  // The time zone changed, the clock was set or the local day turned: announces a change, since
  // the same calendars now mean other instants. Main thread.
  virtual void systemChanged() = 0;
};

// What a store is made of.
struct EventStoreOptions {
  // In the order in which their calendars are listed.
  std::vector<std::unique_ptr<CalendarProvider>> providers;
  // The instant of a due date, for queries that bound it. Called on worker threads.
  std::function<std::optional<Date>(const DateComponents&)> instantOf;
  // How long the first request for access waits for providers that do not get ready; they are then
  // taken to have nothing, and what they have later is a change.
  std::chrono::milliseconds patience{10000};
};

// One store over several providers. What they have is put together; one that can be read makes up
// for another that refuses, and a request fails only when every provider fails. Providers are
// started by the first request for access. The actor and the centre must outlive the store.
std::unique_ptr<EventStore> makeEventStore(EventStoreOptions options, MainActor& actor,
                                           NotificationCenter& notifications);

}  // namespace orvane::host
