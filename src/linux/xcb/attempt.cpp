#include "linux/xcb/attempt.h"

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <system_error>
#include <thread>

namespace orvane::host::xcb {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::hours longest{1};
constexpr std::chrono::milliseconds betweenQuestions{500};

}  // namespace

// Signals are for the thread that has a loop.
void startAside(std::function<void()> work) {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  const auto restore = [&] { pthread_sigmask(SIG_SETMASK, &before, nullptr); };
  try {
    std::thread(std::move(work)).detach();
  } catch (...) {
    restore();
    throw;
  }
  restore();
}

DoneSign::DoneSign() : descriptor_(eventfd(0, EFD_CLOEXEC)) {
  if (descriptor_ < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
}

DoneSign::~DoneSign() { close(descriptor_); }

void DoneSign::give() const {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto size = write(descriptor_, &one, sizeof one);
}

bool DoneSign::waitFor(std::chrono::nanoseconds patience,
                       const std::function<bool()>& isInVain) const {
  using std::chrono::milliseconds;
  const auto deadline = Clock::now() + std::clamp<std::chrono::nanoseconds>(patience, {}, longest);
  for (;;) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
    const auto most = std::clamp(left, milliseconds(0), betweenQuestions);
    pollfd waited{descriptor_, POLLIN, 0};
    const int ready = poll(&waited, 1, static_cast<int>(most.count()));
    if (ready != 0) return ready > 0;
    if (left <= betweenQuestions || (isInVain && isInVain())) return false;
  }
}

}  // namespace orvane::host::xcb
