// tests/fakes/ holds the world as the logic sees it, in memory: small stand-ins that behave, record
// what was done to them, and let a test decide when things happen.
#pragma once

#include <algorithm>
#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "foundation/main_actor.h"

namespace orvane::fakes {

// A loop whose clock is moved by hand and whose workers take turns on the test's own thread: after
// all posted work, one at a time, in order; or only when they are told to.
class ManualMainActor final : public MainActor {
 public:
  // Starts at the given wall-clock time.
  explicit ManualMainActor(Date start = {1'795'000'000}) : wallStart_(start) {}
  ~ManualMainActor() override { tasks().destroyAll(); }

  void post(std::function<void()> work) override { turns_.push_back(std::move(work)); }

  Subscription after(Duration delay, std::function<void()> work) override {
    const Key key{elapsed_ + std::max(delay, Duration::zero()), nextTimer_++};
    timers_->emplace(key, std::move(work));
    return Subscription([weak = std::weak_ptr(timers_), key] {
      if (const auto timers = weak.lock()) timers->erase(key);
    });
  }

  void runOnWorker(std::function<void()> work) override { workers_.push_back(std::move(work)); }
  [[nodiscard]] Date now() const override { return wallStart_ + seconds(elapsed_ - wallSetAt_); }

  // Runs everything that can run without time passing.
  void runUntilIdle() {
    while (runOneTurn() || fireDueTimer() || (!workersHeld_ && runOneWorker())) {
    }
  }

  // Lets time pass, and whatever falls due in it happen at its own instant.
  void advance(Duration time) {
    const Duration target = elapsed_ + time;
    runUntilIdle();
    while (!timers_->empty() && timers_->begin()->first.first <= target) {
      elapsed_ = timers_->begin()->first.first;
      runUntilIdle();
    }
    elapsed_ = target;
  }

  // The next posted piece of work alone; false when there is none.
  bool runOneTurn() { return runFirst(turns_); }
  // The oldest waiting piece of a worker's work; false when there is none.
  bool runOneWorker() { return runFirst(workers_); }
  // From now on workers run only by runOneWorker(), until released.
  void holdWorkers() { workersHeld_ = true; }
  void releaseWorkers() { workersHeld_ = false; }
  void setWallClock(Date date) {
    wallStart_ = date;
    wallSetAt_ = elapsed_;
  }

  [[nodiscard]] std::size_t pendingTimers() const { return timers_->size(); }
  [[nodiscard]] std::size_t pendingWorkers() const { return workers_.size(); }
  [[nodiscard]] std::size_t pendingTurns() const { return turns_.size(); }
  // When the next timer falls due, from now.
  [[nodiscard]] Duration nextTimerIn() const { return timers_->begin()->first.first - elapsed_; }
  [[nodiscard]] Duration elapsed() const { return elapsed_; }

 private:
  using Work = std::function<void()>;
  using Key = std::pair<Duration, unsigned long>;

  static double seconds(Duration time) { return std::chrono::duration<double>(time).count(); }

  static bool runFirst(std::deque<Work>& queue) {
    if (queue.empty()) return false;
    const Work work = std::move(queue.front());
    queue.pop_front();
    work();
    return true;
  }

  bool fireDueTimer() {
    if (timers_->empty() || timers_->begin()->first.first > elapsed_) return false;
    const Work work = std::move(timers_->begin()->second);
    timers_->erase(timers_->begin());
    work();
    return true;
  }

  Date wallStart_;
  Duration wallSetAt_{0};
  Duration elapsed_{0};
  std::deque<Work> turns_;
  std::deque<Work> workers_;
  bool workersHeld_ = false;
  unsigned long nextTimer_ = 0;
  std::shared_ptr<std::map<Key, Work>> timers_ = std::make_shared<std::map<Key, Work>>();
};

}  // namespace orvane::fakes
