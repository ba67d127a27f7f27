#pragma once

#include <functional>
#include <memory>

namespace orvane::host {

// Work for the main thread, handed over from any thread and run in order by the default main
// context.
class PostQueue {
 public:
  PostQueue();
  PostQueue(const PostQueue&) = delete;
  PostQueue& operator=(const PostQueue&) = delete;
  // Drops what has not run.
  ~PostQueue();

  // Any thread. Dropped after close().
  void post(std::function<void()> work);
  // Drops what has not run and everything posted from now on. Main thread only.
  void close();

 private:
  struct State;
  struct Source;
  std::unique_ptr<State> state_;
};

}  // namespace orvane::host
