#pragma once

#include <libecal/libecal.h>

#include <functional>
#include <memory>
#include <string>

#include "linux/evolution/signal_handlers.h"

namespace orvane::host {

// A view of the service: it tells when something that a query finds is added, changed or removed.
// What it sends is not looked at, so it is asked for next to nothing. Signs arrive on the main
// thread, so this is the main thread's from its making to its end.
class CalendarView {
 public:
  // The library's own half, which blocks: any thread may hold it, call it, and be its last owner.
  using Handle = std::shared_ptr<ECalClientView>;
  // Blocks. Null when the service does not grant one.
  static Handle ask(ECalClient* client, const std::string& query, GCancellable* cancellable);
  // Blocks, and cannot be cancelled. Whether the service will report.
  static bool begin(ECalClientView* handle);

  // To be made before it begins, since what is sent until then nobody hears.
  explicit CalendarView(const Handle& handle);

  // The service has reported everything that is there already, or said that it cannot.
  [[nodiscard]] bool isComplete() const { return isComplete_; }

  struct Signs {
    std::function<void()> complete;
    std::function<void()> changed;  // after it was complete
  };
  void listen(Signs signs) { signs_ = std::move(signs); }

 private:
  void hearComplete();
  void hearChange();

  bool isComplete_ = false;
  Signs signs_;
  SignalHandlers handlers_;
};

}  // namespace orvane::host
