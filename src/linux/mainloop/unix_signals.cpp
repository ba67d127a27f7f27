#include "linux/mainloop/unix_signals.h"

#include <sys/eventfd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <memory>
#include <system_error>

#include "linux/files/file_descriptor.h"
#include "linux/mainloop/fd_source.h"

namespace orvane::host {
namespace {

// A signal handler is handed nothing but the number, so where to write must stand here.
std::array<std::atomic<int>, NSIG> descriptorOfSignal{};

// Those that were sent and are not told yet.
std::array<std::atomic<bool>, NSIG> waits{};

void handle(int signal) {
  const int saved = errno;
  waits.at(signal) = true;
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto size = ::write(descriptorOfSignal.at(signal), &one, sizeof one);
  errno = saved;
}

class SignalWatch {
 public:
  SignalWatch(int signal, std::function<void()> received)
      : signal_(signal),
        descriptor_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)),
        received_(std::move(received)),
        source_(descriptor_.get(), SourcePriority::normal, [this] { deliver(); }) {
    if (!descriptor_) throw std::system_error(errno, std::generic_category(), "eventfd");
    descriptorOfSignal.at(signal) = descriptor_.get();
    struct sigaction action {};
    action.sa_handler = handle;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, &previous_);
  }
  SignalWatch(const SignalWatch&) = delete;
  SignalWatch& operator=(const SignalWatch&) = delete;
  ~SignalWatch() {
    sigaction(signal_, &previous_, nullptr);
    waits.at(signal_) = false;
  }

 private:
  void deliver() {
    std::uint64_t count = 0;
    if (::read(descriptor_.get(), &count, sizeof count) <= 0) return;
    waits.at(signal_) = false;
    const auto received = received_;  // the watch may end inside
    received();
  }

  int signal_;
  FileDescriptor descriptor_;
  std::function<void()> received_;
  struct sigaction previous_ {};
  FdSource source_;
};

}  // namespace

Subscription watchSignal(int signal, std::function<void()> received) {
  auto watch = std::make_shared<SignalWatch>(signal, std::move(received));
  return Subscription([watch]() mutable { watch.reset(); });
}

bool doesSignalWait() {
  return std::any_of(waits.begin(), waits.end(), [](const auto& each) { return each.load(); });
}

}  // namespace orvane::host
