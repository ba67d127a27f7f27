#include "linux/x11/first_contact.h"

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace orvane::host::x11 {

namespace {

// What the two threads share. A connection that comes when nobody waits for it any more goes with
// the last of them.
class Attempt {
 public:
  Attempt() : done_(eventfd(0, EFD_CLOEXEC)) {
    if (done_ < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
  }
  Attempt(const Attempt&) = delete;
  Attempt& operator=(const Attempt&) = delete;
  ~Attempt() { close(done_); }

  void finish(Connection::Opened opened) {
    const std::scoped_lock lock(mutex_);
    opened_ = std::move(opened);
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto size = write(done_, &one, sizeof one);
  }
  // Whether it finished in time.
  [[nodiscard]] bool waitFor(std::chrono::nanoseconds patience) const {
    using std::chrono::milliseconds;
    const auto most =
        std::clamp<long long>(std::chrono::ceil<milliseconds>(patience).count(), 0, 3'600'000);
    pollfd waited{done_, POLLIN, 0};
    return poll(&waited, 1, static_cast<int>(most)) > 0;
  }
  Connection::Opened take() {
    const std::scoped_lock lock(mutex_);
    return std::move(opened_);
  }

 private:
  const int done_;
  std::mutex mutex_;
  Connection::Opened opened_;
};

// Signals are for the thread that has a loop.
void startWithoutSignals(std::function<void()> work) {
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

}  // namespace

// xcb has no function that connects within a time, and none that connects on a socket of ours with
// the authority that it would find; so one that waits for ever does so where it is in nobody's way.
Connection::Opened openWithin(std::chrono::nanoseconds patience, const std::string& displayName) {
  try {
    const auto attempt = std::make_shared<Attempt>();
    startWithoutSignals([attempt, displayName] { attempt->finish(Connection::open(displayName)); });
    if (attempt->waitFor(patience)) return attempt->take();
    return {nullptr, "The X display does not answer."};
  } catch (const std::system_error& error) {
    return {nullptr, std::string("The X display cannot be opened: ") + error.what()};
  }
}

}  // namespace orvane::host::x11
