#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <utility>

#include "foundation/main_actor.h"

namespace orvane::host {

// Spaces out attempts at something that fails: each wait is twice the one before, until one attempt
// succeeds. Main thread only.
class BackOff {
 public:
  struct Waits {
    std::chrono::milliseconds first{1000};
    std::chrono::milliseconds longest{300000};
  };

  BackOff(const Waits& waits, MainActor& actor)
      : waits_(waits), next_(waits.first), actor_(actor) {}

  void wait(std::function<void()> retry) {
    timer_ = actor_.after(std::exchange(next_, std::min(next_ * 2, waits_.longest)),
                          [this, retry = std::move(retry)] {
                            timer_.cancel();
                            retry();
                          });
  }
  [[nodiscard]] bool isWaiting() const { return static_cast<bool>(timer_); }
  // The wait is over; what was waited for comes otherwise, and may fail again.
  void cutShort() { timer_.cancel(); }
  // It succeeded, or its circumstances are different now.
  void reset() {
    timer_.cancel();
    next_ = waits_.first;
  }

 private:
  const Waits waits_;
  std::chrono::milliseconds next_;
  MainActor& actor_;
  Subscription timer_;
};

}  // namespace orvane::host
