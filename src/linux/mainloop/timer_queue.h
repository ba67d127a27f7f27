#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>

namespace orvane::host {

// Timers in the order of their deadlines, equal ones in the order of adding. It reads no clock:
// whoever owns it passes the time in.
class TimerQueue {
 public:
  using Time = std::chrono::nanoseconds;
  using Key = std::pair<Time, std::uint64_t>;
  using Work = std::function<void()>;

  Key add(Time deadline, Work work);
  // Does nothing for a timer that ran or was removed.
  void remove(Key key);
  [[nodiscard]] std::optional<Time> nextDeadline() const;
  // Runs what is due at `now`, each timer removed before it runs. Timers added meanwhile wait for
  // the next call, even if they are due already.
  void run(Time now);

 private:
  std::uint64_t nextNumber_ = 0;
  std::map<Key, Work> timers_;
};

}  // namespace orvane::host
