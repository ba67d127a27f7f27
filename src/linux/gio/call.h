#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "linux/gio/handles.h"

namespace orvane::host::gio {

// Somebody's method on the bus.
struct Method {
  std::string destination;  // a bus name
  std::string path;
  std::string interface;
  std::string name;
};

// What came of a call: the tuple of results, or null and the reason.
using Answered = std::function<void(GVariant* results, const Failure& failure)>;

// Calls without waiting, and without starting a service for it. `arguments` is a tuple, taken over
// if it is floating; null: none. `answered` is called once in a later turn of the default main
// context, at the latest after `limit`, but never when the cancellation came first. Null: nobody
// cares.
void call(GDBusConnection* connection, const Method& method, GVariant* arguments,
          std::chrono::milliseconds limit, const Cancellation& cancellation, Answered answered);

// The same, but a service that is not running is started for it, if the bus knows how.
void callStarting(GDBusConnection* connection, const Method& method, GVariant* arguments,
                  std::chrono::milliseconds limit, const Cancellation& cancellation,
                  Answered answered);

// A signal of somebody on the bus, for as long as this lives.
class SignalWatch {
 public:
  using Heard = std::function<void(GVariant* arguments)>;

  SignalWatch(GDBusConnection* connection, const Method& signal, Heard heard);
  SignalWatch(const SignalWatch&) = delete;
  SignalWatch& operator=(const SignalWatch&) = delete;
  ~SignalWatch();

 private:
  const ObjectPtr<GDBusConnection> connection_;
  const Heard heard_;
  guint subscription_ = 0;
};

}  // namespace orvane::host::gio
