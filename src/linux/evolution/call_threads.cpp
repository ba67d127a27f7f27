#include "linux/evolution/call_threads.h"

#include <system_error>
#include <thread>
#include <utility>

namespace orvane::host {
namespace {

// As many calendars of a server that hangs may be waited for before others have to wait for those.
constexpr std::size_t mostThreads = 64;

}  // namespace

void CallThreads::run(std::function<void()> call) {
  const std::lock_guard lock(mutex_);
  if (isClosed_) return;
  waiting_.push_back(std::move(call));
  if (running_ == mostThreads) return;
  try {
    std::thread([self = shared_from_this()] { self->work(); }).detach();
    ++running_;
  } catch (const std::system_error&) {
    // No thread can be had. One that runs will come to it, else the caller's time limit will.
  }
}

void CallThreads::work() {
  std::unique_lock lock(mutex_);
  while (!waiting_.empty()) {
    auto call = std::move(waiting_.front());
    waiting_.pop_front();
    lock.unlock();
    call();
    call = nullptr;  // what it holds must not wait for the lock
    lock.lock();
  }
  --running_;
  ended_.notify_all();
}

void CallThreads::post(std::function<void()> work) {
  const std::lock_guard lock(postMutex_);
  if (actor_ != nullptr) actor_->post(std::move(work));
}

void CallThreads::close() {
  {
    const std::lock_guard lock(postMutex_);
    actor_ = nullptr;
  }
  std::deque<std::function<void()>> dropped;
  std::unique_lock lock(mutex_);
  isClosed_ = true;
  dropped.swap(waiting_);
  ended_.wait_for(lock, farewell_, [this] { return running_ == 0; });
}

}  // namespace orvane::host
