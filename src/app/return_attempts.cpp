#include "app/return_attempts.h"

#include <algorithm>
#include <utility>

namespace orvane {

ReturnAttempts::ReturnAttempts(MainActor& actor, ReturnPolicy policy, Hooks hooks)
    : actor_(actor), policy_(policy), hooks_(std::move(hooks)), delay_(policy.firstDelay) {}

void ReturnAttempts::stands() {
  retry_.cancel();
  limit_.cancel();
  settling_ = actor_.after(policy_.settled, [this] {
    delay_ = policy_.firstDelay;
    refusals_ = 0;
  });
}

void ReturnAttempts::lost(bool isRefusal) {
  settling_.cancel();
  if (isRefusal && ++refusals_ >= policy_.mostRefusals) return giveUp(End::refused);
  lostAt_ = actor_.now();
  limit_ = actor_.after(policy_.limit, [this] { giveUp(End::limitPassed); });
  wait();
}

void ReturnAttempts::wait() {
  retry_ = actor_.after(delay_, [this] { tryAgain(); });
  delay_ = std::min(2 * delay_, policy_.longestDelay);
}

void ReturnAttempts::tryAgain() {
  if (hooks_.sessionHasEnded()) return giveUp(End::sessionEnded);
  if (hooks_.attempt(patience())) return stands();
  wait();
}

void ReturnAttempts::giveUp(End end) {
  retry_.cancel();
  limit_.cancel();
  hooks_.gaveUp(end);
}

// What is left until the limit, since an attempt keeps the loop from telling that it has passed. A
// clock that was set meanwhile makes an attempt shorter or longer, within its bounds.
Duration ReturnAttempts::patience() const {
  const std::chrono::duration<double> waited(std::clamp(actor_.now() - lostAt_, 0.0, 3600.0));
  const auto left = policy_.limit - std::chrono::duration_cast<Duration>(waited);
  const Duration least = std::min<Duration>(policy_.patience, std::chrono::milliseconds(100));
  return std::clamp(left, least, policy_.patience);
}

}  // namespace orvane
