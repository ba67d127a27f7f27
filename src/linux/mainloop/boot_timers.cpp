#include "linux/mainloop/boot_timers.h"

#include <sys/timerfd.h>

#include <algorithm>
#include <cstdint>

#include "linux/mainloop/clocks.h"

namespace orvane::host {
namespace {

// Far enough for any wait, near enough that no sum of times overflows.
constexpr Duration kLongest = std::chrono::hours(24) * 365 * 50;

}  // namespace

BootTimers::BootTimers()
    : descriptor_(openTimer(CLOCK_BOOTTIME)),
      source_(descriptor_.get(), SourcePriority::normal, [this] { fire(); }) {}

Subscription BootTimers::after(Duration delay, std::function<void()> work) {
  const auto wait = std::clamp(delay, Duration::zero(), kLongest);
  const auto key = queue_->add(bootTime() + wait, std::move(work));
  arm();
  return Subscription([weak = std::weak_ptr(queue_), key] {
    if (auto queue = weak.lock()) queue->remove(key);
  });
}

void BootTimers::fire() {
  std::uint64_t expirations = 0;
  // A spurious wake-up finds nothing to read, and then nothing is due either.
  [[maybe_unused]] const auto size = ::read(descriptor_.get(), &expirations, sizeof expirations);
  armedFor_.reset();
  const auto queue = queue_;
  queue->run(bootTime());
  arm();
}

// A removed timer leaves the descriptor armed: the one needless wake-up costs less than a system
// call for each of the many timers that are replaced before they run.
void BootTimers::arm() {
  const auto next = queue_->nextDeadline();
  if (!next || (armedFor_ && *armedFor_ <= *next)) return;
  itimerspec spec{};
  spec.it_value = toTimespec(std::max(*next, Duration(1)));
  if (timerfd_settime(descriptor_.get(), TFD_TIMER_ABSTIME, &spec, nullptr) == 0) armedFor_ = next;
}

}  // namespace orvane::host
