#include "linux/calendars/change_burst.h"

#include <chrono>

namespace orvane::host {
namespace {

using std::chrono::milliseconds;

// The two together leave some of the tenth of a second to a busy main loop.
constexpr milliseconds quietTime{40};
constexpr milliseconds longestLook{45};
// A burst without end is announced in between.
constexpr milliseconds longestBurst{2000};

}  // namespace

void ChangeBurst::signal() {
  if (!longest_) longest_ = actor_.after(longestBurst, [this] { beginLook(); });
  quiet_ = actor_.after(quietTime, [this] { beginLook(); });
}

void ChangeBurst::stop() {
  quiet_.cancel();
  longest_.cancel();
  latest_.cancel();
}

void ChangeBurst::beginLook() {
  quiet_.cancel();
  longest_.cancel();
  latest_ = actor_.after(longestLook, [this] { announce(); });
  isPending_ = isLooking_;
  if (isLooking_) return;
  isLooking_ = true;
  look_();
}

void ChangeBurst::looked(bool foundChange, bool isUrgent) {
  foundChange_ = foundChange_ || foundChange;
  isUrgent_ = isUrgent_ || isUrgent;
  isLooking_ = std::exchange(isPending_, false);
  if (isLooking_) return look_();
  // Once the time for it ran out the announcement has been made.
  const bool isDue = static_cast<bool>(latest_);
  if ((isDue && foundChange_) || isUrgent_) return announce();
  latest_.cancel();
  foundChange_ = false;
}

void ChangeBurst::announce() {
  latest_.cancel();
  foundChange_ = isUrgent_ = false;
  announce_();
}

}  // namespace orvane::host
