// mainloop/ is the program's one thread of logic as a GLib main loop, and the clocks that drive it:
// timers that go on through suspend, worker threads, the beat of whole seconds, and the news that
// the wall clock, the time zone or the local day changed.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>

#include "foundation/main_actor.h"
#include "foundation/subscription.h"

namespace orvane::host {

// The main actor over GLib's default main context, so that everything else that lives on that
// context (bus, display connections) shares the thread. Main thread only, but for what MainActor
// allows from elsewhere.
//
// Destroying it first destroys the suspended coroutines, then waits for workers that are at work,
// then drops posts and timers that have not run; what they hold must still be alive until then.
class MainLoop : public MainActor {
 public:
  // Handles events until quit() and returns its status. quit() before run() makes run() return
  // without handling any. May be called again afterwards.
  virtual int run() = 0;
  // Ends run() when the event at hand is done. The first status counts.
  virtual void quit(int status) = 0;
  // Calls `received` in a turn of the loop when the process is sent `signal` (SIGTERM, SIGINT …).
  // One subscription per signal; it must end before the loop is destroyed.
  virtual Subscription onSignal(int signal, std::function<void()> received) = 0;
  // Whether one was sent that the loop has not told yet, which whoever keeps the loop may ask.
  [[nodiscard]] virtual bool doesSignalWait() const = 0;
};

struct MainLoopOptions {
  // Three readings of calendars may be slow at a time: of folders, of accounts, and of those among
  // them that were set aside. One is free then.
  std::size_t workerThreads = 4;
  // How long a worker thread waits for more work before it ends.
  std::chrono::milliseconds workerIdle{3000};
};

// Throws std::system_error when the kernel gives no timer. Its caller becomes the main thread.
[[nodiscard]] std::unique_ptr<MainLoop> makeMainLoop(const MainLoopOptions& options = {});

}  // namespace orvane::host
