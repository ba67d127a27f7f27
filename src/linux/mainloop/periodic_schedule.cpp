#include "linux/mainloop/periodic_schedule.h"

#include <utility>

#include "foundation/subject.h"
#include "linux/mainloop/second_beat.h"

namespace orvane::host {
namespace {

// What the subscriptions share with the schedule.
class Beater : public std::enable_shared_from_this<Beater> {
 public:
  explicit Beater(std::unique_ptr<WallTimer> timer) : timer_(std::move(timer)) {}

  Subscription subscribe(std::function<void(Date)> tick) {
    const bool first = subject_.observerCount() == 0;
    auto entry = std::make_shared<Subscription>(
        subject_.subscribe([tick = std::move(tick)](const Date& date) { tick(date); }));
    if (first) arm(beat_.start(timer_->now()));
    return Subscription([weak = weak_from_this(), entry] {
      entry->cancel();
      if (auto self = weak.lock()) self->restIfUnheard();
    });
  }

 private:
  void arm(SecondBeat::Time at) {
    timer_->arm(at, [weak = weak_from_this()](WallTimerEvent event) {
      if (auto self = weak.lock()) self->wake(event);
    });
  }

  void wake(WallTimerEvent event) {
    const auto now = timer_->now();
    const auto beat =
        event == WallTimerEvent::clockChanged ? beat_.clockChanged(now) : beat_.reached(now);
    // Armed before the observers run, so that however long they take delays no beat.
    arm(beat.next);
    if (beat.tick) subject_.send(Date{static_cast<double>(beat.tick->count())});
  }

  void restIfUnheard() {
    if (subject_.observerCount() == 0) timer_->disarm();
  }

  std::unique_ptr<WallTimer> timer_;
  SecondBeat beat_;
  Subject<Date> subject_;
};

class WallClockSchedule final : public PeriodicSchedule {
 public:
  explicit WallClockSchedule(std::unique_ptr<WallTimer> timer)
      : beater_(std::make_shared<Beater>(std::move(timer))) {}
  Subscription everySecond(std::function<void(Date)> tick) override {
    return beater_->subscribe(std::move(tick));
  }

 private:
  std::shared_ptr<Beater> beater_;
};

}  // namespace

std::unique_ptr<PeriodicSchedule> makePeriodicSchedule(std::unique_ptr<WallTimer> timer) {
  return std::make_unique<WallClockSchedule>(std::move(timer));
}

}  // namespace orvane::host
