#include "linux/mainloop/worker_pool.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace orvane::host {
namespace {

void joinAll(std::vector<std::thread>& threads) {
  for (auto& thread : threads) thread.join();
  threads.clear();
}

}  // namespace

void WorkerPool::run(std::function<void()> work) {
  std::unique_lock lock(mutex_);
  if (closed_) return;
  pending_.push_back(std::move(work));
  const bool enough = idle_ >= pending_.size() || running_.size() >= limits_.threads;
  if (enough || startThread()) {
    wake_.notify_one();
    return;
  }
  if (!running_.empty()) return;
  // Not one thread can be had. Late is better than never, so the caller does it.
  auto once = std::move(pending_.front());
  pending_.pop_front();
  lock.unlock();
  once();
}

bool WorkerPool::startThread() {
  try {
    running_.emplace_back([this] { work(); });
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

void WorkerPool::work() {
  std::unique_lock lock(mutex_);
  while (true) {
    ++idle_;
    const bool woken =
        wake_.wait_for(lock, limits_.idle, [this] { return closed_ || !pending_.empty(); });
    --idle_;
    if (!woken || closed_) return leave(std::move(lock));
    auto next = std::move(pending_.front());
    pending_.pop_front();
    lock.unlock();
    next();
    next = nullptr;  // what it holds must not wait for the lock
    lock.lock();
  }
}

// A thread cannot join itself: it joins those that left before, and leaves itself to the next.
void WorkerPool::leave(std::unique_lock<std::mutex> lock) {
  if (closed_) return;  // close() has taken all threads and joins them
  auto earlier = std::exchange(ended_, {});
  const auto self = std::find_if(running_.begin(), running_.end(), [](const std::thread& thread) {
    return thread.get_id() == std::this_thread::get_id();
  });
  ended_.push_back(std::move(*self));
  running_.erase(self);
  lock.unlock();
  joinAll(earlier);
}

void WorkerPool::close() {
  std::deque<std::function<void()>> dropped;
  std::vector<std::thread> threads;
  {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    dropped.swap(pending_);
    threads = std::exchange(running_, {});
    std::move(ended_.begin(), ended_.end(), std::back_inserter(threads));
    ended_.clear();
  }
  wake_.notify_all();
  dropped.clear();
  joinAll(threads);
}

std::size_t WorkerPool::threadCount() const {
  const std::lock_guard lock(mutex_);
  return running_.size();
}

}  // namespace orvane::host
