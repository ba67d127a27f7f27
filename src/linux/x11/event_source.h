#pragma once

#include <functional>
#include <memory>

#include "linux/x11/connection.h"

namespace orvane::host::x11 {

// Ties a connection to the default main context: delivers what arrives, and flushes what was asked
// once per turn of the loop, however many windows asked. Events that xcb read ahead, while it
// waited for a reply, are delivered too. A server that reads nothing for a while counts as lost.
class EventSource {
 public:
  // `onLost` is called once, within a turn of the loop; nothing is delivered after it.
  EventSource(Connection& connection, std::function<void()> onLost);
  EventSource(const EventSource&) = delete;
  EventSource& operator=(const EventSource&) = delete;
  ~EventSource();

 private:
  struct Source;
  Source* source_;
};

}  // namespace orvane::host::x11
