#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "linux/mainloop/wall_timer.h"

namespace orvane::host {

// A wall clock that is moved by hand. Outlives the timer that works on it.
class FakeWallClock {
 public:
  using Time = WallTimer::Time;

  explicit FakeWallClock(Time start) : now_(start) {}

  [[nodiscard]] Time now() const { return now_; }
  [[nodiscard]] std::optional<Time> armedFor() const { return armedFor_; }

  // Time goes by; an armed timer fires when its time has come, each at its exact time.
  void advance(Time by) {
    const Time end = now_ + by;
    while (armedFor_ && *armedFor_ <= end) {
      now_ = std::max(now_, *armedFor_);
      fire(WallTimerEvent::reached);
    }
    now_ = end;
  }
  // The process is not run for a while, then finds its timer expired.
  void stall(Time by) {
    now_ += by;
    if (armedFor_ && *armedFor_ <= now_) fire(WallTimerEvent::reached);
  }
  // Somebody sets the clock.
  void set(Time now) {
    now_ = now;
    if (armedFor_) fire(WallTimerEvent::clockChanged);
  }

  [[nodiscard]] std::unique_ptr<WallTimer> makeTimer() { return std::make_unique<Timer>(*this); }

 private:
  class Timer final : public WallTimer {
   public:
    explicit Timer(FakeWallClock& clock) : clock_(clock) {}
    [[nodiscard]] Time now() const override { return clock_.now_; }
    void arm(Time at, Handler handler) override {
      clock_.armedFor_ = at;
      clock_.handler_ = std::move(handler);
    }
    void disarm() override {
      clock_.armedFor_.reset();
      clock_.handler_ = nullptr;
    }

   private:
    FakeWallClock& clock_;
  };

  void fire(WallTimerEvent event) {
    armedFor_.reset();
    if (const auto handler = std::exchange(handler_, nullptr)) handler(event);
  }

  Time now_;
  std::optional<Time> armedFor_;
  WallTimer::Handler handler_;
};

}  // namespace orvane::host
