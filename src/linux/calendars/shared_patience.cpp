#include "linux/calendars/shared_patience.h"

#include <utility>

namespace orvane::host {

SharedPatience::Waiter::Waiter(SharedPatience& patience) : patience_(patience) {
  patience_.waiters_.push_back(this);
}

SharedPatience::Waiter::~Waiter() { std::erase(patience_.waiters_, this); }

void SharedPatience::Waiter::wait(const Limit& limit, std::function<void()> expired) {
  quiet_ = limit.quiet;
  expired_ = std::move(expired);
  end_ = patience_.actor_.after(limit.longest, [this] { expire(); });
  renew();
}

void SharedPatience::Waiter::answered() {
  giveUp();
  patience_.noteProgressOf(*this);
}

void SharedPatience::Waiter::giveUp() {
  next_.cancel();
  end_.cancel();
}

void SharedPatience::Waiter::renew() {
  next_ = patience_.actor_.after(quiet_, [this] { expire(); });
}

void SharedPatience::Waiter::expire() {
  giveUp();
  const auto expired = std::exchange(expired_, nullptr);
  expired();
}

std::uint64_t SharedPatience::currentTurn() {
  if (!turnEnd_) {
    turnEnd_ = actor_.after(Duration::zero(), [this] {
      turnEnd_.cancel();
      ++turn_;
    });
  }
  return turn_;
}

void SharedPatience::noteProgressOf(const Waiter& one) {
  for (auto* const waiter : waiters_) {
    if (waiter->next_ && waiter->turn_ >= one.turn_) waiter->renew();
  }
}

}  // namespace orvane::host
