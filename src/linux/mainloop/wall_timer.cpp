#include "linux/mainloop/wall_timer.h"

#include <sys/timerfd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <utility>

#include "linux/files/file_descriptor.h"
#include "linux/mainloop/clocks.h"
#include "linux/mainloop/fd_source.h"

namespace orvane::host {
namespace {

class TimerfdWallTimer final : public WallTimer {
 public:
  TimerfdWallTimer()
      : descriptor_(openTimer(CLOCK_REALTIME)),
        source_(descriptor_.get(), SourcePriority::urgent, [this] { readable(); }) {}

  [[nodiscard]] Time now() const override { return wallTime(); }

  void arm(Time at, Handler handler) override {
    handler_ = std::move(handler);
    itimerspec spec{};
    spec.it_value = toTimespec(std::max(at, Time(1)));  // zero would disarm
    setTime(spec);
  }

  void disarm() override {
    handler_ = nullptr;
    setTime({});
  }

 private:
  void setTime(const itimerspec& spec) {
    // ECANCELED tells of a jump since the last arming; the timer is armed all the same.
    timerfd_settime(descriptor_.get(), TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &spec, nullptr);
  }

  void readable() {
    std::uint64_t expirations = 0;
    const auto size = ::read(descriptor_.get(), &expirations, sizeof expirations);
    if (size < 0 && errno != ECANCELED) return;  // nothing to read: armed anew in the meantime
    const auto event = size < 0 ? WallTimerEvent::clockChanged : WallTimerEvent::reached;
    if (const auto handler = std::exchange(handler_, nullptr)) handler(event);
  }

  FileDescriptor descriptor_;
  Handler handler_;
  FdSource source_;
};

}  // namespace

std::unique_ptr<WallTimer> makeWallTimer() { return std::make_unique<TimerfdWallTimer>(); }

}  // namespace orvane::host
