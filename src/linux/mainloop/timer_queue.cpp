#include "linux/mainloop/timer_queue.h"

namespace orvane::host {

TimerQueue::Key TimerQueue::add(Time deadline, Work work) {
  const Key key{deadline, nextNumber_++};
  timers_.emplace(key, std::move(work));
  return key;
}

void TimerQueue::remove(Key key) {
  // What the work holds may be the token of another timer: it dies when the map is whole again.
  const auto removed = timers_.extract(key);
}

std::optional<TimerQueue::Time> TimerQueue::nextDeadline() const {
  if (timers_.empty()) return std::nullopt;
  return timers_.begin()->first.first;
}

void TimerQueue::run(Time now) {
  const auto firstNew = nextNumber_;
  // A new timer may sort between old ones, so the walk goes on from a key and not an iterator.
  auto next = timers_.begin();
  while (next != timers_.end() && next->first.first <= now) {
    const Key key = next->first;
    if (key.second >= firstNew) {
      ++next;
      continue;
    }
    const Work work = std::move(next->second);
    timers_.erase(next);
    work();
    next = timers_.upper_bound(key);
  }
}

}  // namespace orvane::host
