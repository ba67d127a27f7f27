#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "foundation/main_actor.h"
#include "linux/files/file_descriptor.h"
#include "linux/mainloop/fd_source.h"
#include "linux/mainloop/timer_queue.h"

namespace orvane::host {

// Timers on CLOCK_BOOTTIME: time spent in suspend counts, setting the wall clock does not. All of
// them share one timerfd in the default main context. Main thread only.
class BootTimers {
 public:
  // Throws std::system_error when the kernel gives no timer.
  BootTimers();

  // The subscription may outlive this object.
  Subscription after(Duration delay, std::function<void()> work);

 private:
  void fire();
  void arm();

  FileDescriptor descriptor_;
  std::shared_ptr<TimerQueue> queue_ = std::make_shared<TimerQueue>();
  std::optional<TimerQueue::Time> armedFor_;
  FdSource source_;
};

}  // namespace orvane::host
