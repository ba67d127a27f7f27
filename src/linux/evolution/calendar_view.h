#pragma once

#include <libecal/libecal.h>

#include <functional>
#include <memory>
#include <string>

#include "linux/evolution/signal_handlers.h"
#include "linux/gio/handles.h"

namespace orvane::host {

// A view of the service: it tells when something that a query finds is added, changed or removed.
// What it sends is not looked at, so it is asked for next to nothing. Made on any thread, blocking;
// everything else is the main thread's, on which the signs arrive.
class CalendarView {
 public:
  // Null when the service does not grant one.
  static std::unique_ptr<CalendarView> start(ECalClient* client, const std::string& query,
                                             GCancellable* cancellable);

  // The service has reported everything that is there already, or said that it cannot.
  [[nodiscard]] bool isComplete() const { return isComplete_; }

  struct Signs {
    std::function<void()> complete;
    std::function<void()> changed;  // after it was complete
  };
  void listen(Signs signs) { signs_ = std::move(signs); }

 private:
  explicit CalendarView(gio::ObjectPtr<ECalClientView> view);

  void hearComplete();
  void hearChange();

  const gio::ObjectPtr<ECalClientView> view_;
  bool isComplete_ = false;
  Signs signs_;
  SignalHandlers handlers_;
};

}  // namespace orvane::host
