#include "app/return_attempts.h"

#include <algorithm>
#include <utility>

namespace orvane {

ReturnAttempts::ReturnAttempts(MainActor& actor, ReturnPolicy policy, Hooks hooks)
    : actor_(actor), policy_(policy), hooks_(std::move(hooks)), delay_(policy.firstDelay) {}

void ReturnAttempts::stands() {
  waitNoMore();
  settling_ = actor_.after(policy_.settled, [this] {
    delay_ = policy_.firstDelay;
    if (refusals_ > 0) forgiveLater();
  });
}

void ReturnAttempts::forgiveLater() {
  settling_ = actor_.after(policy_.forgiven - policy_.settled, [this] { refusals_ = 0; });
}

void ReturnAttempts::lost(bool isRefusal) {
  settling_.cancel();
  if (isRefusal && ++refusals_ >= policy_.mostRefusals) return giveUp(End::refused);
  lostAt_ = actor_.now();
  limit_ = actor_.after(policy_.limit, [this] { tryTheLastTime(); });
  askForSession();
  wait();
}

void ReturnAttempts::wait() {
  retry_ = actor_.after(delay_, [this] { tryAgain(); });
  delay_ = std::min(2 * delay_, policy_.longestDelay);
}

void ReturnAttempts::tryAgain() {
  if (!triesOnce(patience())) wait();
}

// Whether that decided it, one way or the other.
bool ReturnAttempts::triesOnce(Duration patience) {
  const auto over = [this] {
    if (!hooks_.sessionHasEnded()) return false;
    giveUp(End::sessionEnded);
    return true;
  };
  if (over()) return true;
  if (!hooks_.attempt(patience)) return over();
  stands();
  return true;
}

// The time may have passed in a sleep of the machine, and the desktop may be there.
void ReturnAttempts::tryTheLastTime() {
  if (!triesOnce(leastPatience())) giveUp(End::limitPassed);
}

void ReturnAttempts::askForSession() {
  question_ = actor_.after(policy_.betweenQuestions, [this] {
    if (hooks_.sessionHasEnded()) return giveUp(End::sessionEnded);
    askForSession();
  });
}

void ReturnAttempts::giveUp(End end) {
  waitNoMore();
  hooks_.gaveUp(end);
}

void ReturnAttempts::waitNoMore() {
  retry_.cancel();
  limit_.cancel();
  question_.cancel();
}

// Bounded by what is left until the limit, since an attempt keeps the loop from telling that it has
// passed. A clock that was set meanwhile makes an attempt shorter or longer, within its bounds.
Duration ReturnAttempts::patience() const {
  const std::chrono::duration<double> since(std::clamp(actor_.now() - lostAt_, 0.0, 3600.0));
  const auto waited = std::chrono::duration_cast<Duration>(since);
  const auto most = std::clamp(waited / 2, policy_.patience, policy_.longestPatience);
  return std::clamp(policy_.limit - waited, leastPatience(), most);
}

Duration ReturnAttempts::leastPatience() const {
  return std::min<Duration>(policy_.patience, std::chrono::milliseconds(500));
}

}  // namespace orvane
