#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

#include "foundation/main_actor.h"

namespace orvane::host {

// Threads for calls that block for as long as somebody else pleases. They are begun when there is
// something to call and end with the last call, and they are none of the program's workers, so
// that a service that hangs holds up nobody but itself.
//
// Shared by the calls and their owners: a thread that is stuck keeps what it needs.
class CallThreads : public std::enable_shared_from_this<CallThreads> {
 public:
  // The actor must live until close(), which waits for so long at most.
  explicit CallThreads(MainActor& actor,
                       std::chrono::milliseconds farewell = std::chrono::milliseconds(500))
      : farewell_(farewell), actor_(&actor) {}

  // Any thread. So many at once that one seldom waits for another.
  void run(std::function<void()> call);
  // Any thread: a turn of the main thread, unless it was closed meanwhile.
  void post(std::function<void()> work);
  // Main thread: nothing is posted any more, calls that have not begun are dropped, and those under
  // way are waited for for a moment.
  void close();

 private:
  void work();

  const std::chrono::milliseconds farewell_;
  std::mutex postMutex_;
  MainActor* actor_;

  std::mutex mutex_;
  std::condition_variable ended_;
  std::deque<std::function<void()>> waiting_;
  std::size_t running_ = 0;
  bool isClosed_ = false;
};

}  // namespace orvane::host
