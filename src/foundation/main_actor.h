#pragma once

#include <chrono>
#include <functional>
#include <utility>

#include "foundation/date.h"
#include "foundation/subscription.h"
#include "foundation/task_set.h"

namespace orvane {

using Duration = std::chrono::nanoseconds;

// The one thread on which all logic runs, as an event loop that it can ask for turns.
//
// post() and resumeLater() may be called from any thread; everything else only from the main
// thread. Nothing given here is ever called before the call that gave it has returned.
class MainActor {
 public:
  MainActor() = default;
  MainActor(const MainActor&) = delete;
  MainActor& operator=(const MainActor&) = delete;
  virtual ~MainActor() = default;

  // Runs `work` on the main thread in a later turn, in the order of the posts.
  virtual void post(std::function<void()> work) = 0;

  // Runs `work` once on the main thread when `delay` has passed on a clock that goes on through
  // suspend and is not moved by setting the time. A delay of zero or less means the next turn.
  // The subscription may be ended or destroyed inside `work`, which stays alive until it returns.
  // Ending the subscription before then means that `work` never runs.
  virtual Subscription after(Duration delay, std::function<void()> work) = 0;

  // Runs `work` on some other thread, as soon as one is free. It must not touch main-thread state.
  virtual void runOnWorker(std::function<void()> work) = 0;

  // The wall clock.
  [[nodiscard]] virtual Date now() const = 0;

  // What owns the running coroutines. Implementations call tasks().destroyAll() before anything
  // that a suspended coroutine may refer to is gone.
  TaskSet& tasks() { return tasks_; }

 private:
  TaskSet tasks_;
};

// Calls `work` with the latest value once `quiet` has passed since the last signal; each signal
// begins the wait anew. Owned by the subscription that it was built for. Main thread only.
class Debounce {
 public:
  Debounce(MainActor& actor, Duration quiet, std::function<void()> work)
      : actor_(actor), quiet_(quiet), work_(std::move(work)) {}
  void signal() { timer_ = actor_.after(quiet_, work_); }

 private:
  MainActor& actor_;
  Duration quiet_;
  std::function<void()> work_;
  Subscription timer_;
};

}  // namespace orvane
