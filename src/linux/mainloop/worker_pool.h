#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace orvane::host {

// Threads that are started when there is work and end when there has been none for a while, so
// that a program at rest has none. Work is begun in the order in which it came.
class WorkerPool {
 public:
  struct Limits {
    std::size_t threads = 2;
    std::chrono::milliseconds idle{3000};
  };
  explicit WorkerPool(Limits limits) : limits_(limits) {}
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;
  ~WorkerPool() { close(); }

  void run(std::function<void()> work);
  // Drops what has not begun, waits for what has, and takes nothing more.
  void close();
  [[nodiscard]] std::size_t threadCount() const;

 private:
  void work();
  void leave(std::unique_lock<std::mutex> lock);
  [[nodiscard]] bool startThread();

  const Limits limits_;
  mutable std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<std::function<void()>> pending_;
  std::vector<std::thread> running_;
  std::vector<std::thread> ended_;  // have left, or are about to, and only wait to be joined
  std::size_t idle_ = 0;
  bool closed_ = false;
};

}  // namespace orvane::host
