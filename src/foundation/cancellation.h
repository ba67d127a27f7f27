#pragma once

#include <functional>
#include <utility>

#include "foundation/subject.h"
#include "foundation/subscription.h"

namespace orvane {

// Whether a task was asked to stop. Only sleeps and `co_await isCancelled()` heed it.
class Cancellation {
 public:
  [[nodiscard]] bool isCancelled() const { return cancelled_; }
  void cancel() {
    cancelled_ = true;
    onCancel_.send();
  }
  Subscription onCancel(std::function<void()> wake) { return onCancel_.subscribe(std::move(wake)); }

 private:
  bool cancelled_ = false;
  Subject<> onCancel_;
};

}  // namespace orvane
