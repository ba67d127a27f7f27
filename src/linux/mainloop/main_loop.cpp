#include "linux/mainloop/main_loop.h"

#include <glib.h>

#include <optional>

#include "linux/mainloop/boot_timers.h"
#include "linux/mainloop/clocks.h"
#include "linux/mainloop/post_queue.h"
#include "linux/mainloop/unix_signals.h"
#include "linux/mainloop/worker_pool.h"

namespace orvane::host {
namespace {

class GLibMainLoop final : public MainLoop {
 public:
  explicit GLibMainLoop(const MainLoopOptions& options)
      : workers_({options.workerThreads, options.workerIdle}) {}
  ~GLibMainLoop() override {
    tasks().destroyAll();
    workers_.close();
    posts_.close();
  }

  void post(std::function<void()> work) override { posts_.post(std::move(work)); }
  Subscription after(Duration delay, std::function<void()> work) override {
    return timers_.after(delay, std::move(work));
  }
  void runOnWorker(std::function<void()> work) override { workers_.run(std::move(work)); }
  [[nodiscard]] Date now() const override {
    return {std::chrono::duration<double>(wallTime()).count()};
  }

  int run() override {
    while (!status_) g_main_context_iteration(nullptr, TRUE);
    const int status = *status_;
    status_.reset();
    return status;
  }
  void quit(int status) override {
    if (!status_) status_ = status;
  }
  Subscription onSignal(int signal, std::function<void()> received) override {
    return watchSignal(signal, std::move(received));
  }
  [[nodiscard]] bool doesSignalWait() const override { return host::doesSignalWait(); }

 private:
  std::optional<int> status_;
  PostQueue posts_;
  BootTimers timers_;
  WorkerPool workers_;
};

}  // namespace

std::unique_ptr<MainLoop> makeMainLoop(const MainLoopOptions& options) {
  return std::make_unique<GLibMainLoop>(options);
}

}  // namespace orvane::host
