#pragma once

#include <coroutine>
#include <exception>
#include <memory>
#include <optional>
#include <utility>

#include "foundation/cancellation.h"
#include "foundation/main_actor.h"

namespace orvane {

template <class T>
class Task;

namespace detail {

// What every promise of this file has in common: whom to resume at the end, and the cancellation
// that it shares with whoever awaits it.
struct PromiseBase {
  std::coroutine_handle<> continuation;
  std::shared_ptr<Cancellation> cancellation;
  std::exception_ptr failure;

  std::suspend_always initial_suspend() noexcept { return {}; }
  struct FinalAwaiter {
    [[nodiscard]] bool await_ready() const noexcept { return false; }
    template <class Promise>
    std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> self) noexcept {
      const auto awaiting = self.promise().continuation;
      return awaiting ? awaiting : std::noop_coroutine();
    }
    void await_resume() const noexcept {}
  };
  FinalAwaiter final_suspend() noexcept { return {}; }
  void unhandled_exception() noexcept { failure = std::current_exception(); }
};

template <class T>
struct Promise : PromiseBase {
  std::optional<T> value;
  Task<T> get_return_object();
  template <class U>
  void return_value(U&& result) {
    value.emplace(std::forward<U>(result));
  }
  T take() {
    if (failure) std::rethrow_exception(failure);
    return std::move(*value);
  }
};

template <>
struct Promise<void> : PromiseBase {
  Task<void> get_return_object();
  void return_void() noexcept {}
  void take() const {
    if (failure) std::rethrow_exception(failure);
  }
};

}  // namespace detail

// A lazy coroutine: it starts when it is awaited and resumes its awaiter when it ends. Move-only;
// destroying it destroys the frame. Parameters must be taken by value, and a lambda with captures
// must not be a coroutine: its captures die before the coroutine does.
template <class T = void>
class [[nodiscard]] Task {
 public:
  using promise_type = detail::Promise<T>;
  using Handle = std::coroutine_handle<promise_type>;

  explicit Task(Handle handle) : handle_(handle) {}
  Task(Task&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Task& operator=(Task&& other) noexcept {
    if (this != &other) {
      destroy();
      handle_ = std::exchange(other.handle_, nullptr);
    }
    return *this;
  }
  Task(const Task&) = delete;
  Task& operator=(const Task&) = delete;
  ~Task() { destroy(); }

  [[nodiscard]] bool await_ready() const noexcept { return false; }
  // Runs the work up to its first real wait, and suspends the awaiter only if there is one. Handing
  // control over instead would deepen the stack with every await that ends at once, wherever the
  // compiler does not turn it into a jump.
  template <class AwaitingPromise>
  bool await_suspend(std::coroutine_handle<AwaitingPromise> awaiting) {
    auto& promise = handle_.promise();
    promise.cancellation = awaiting.promise().cancellation;
    handle_.resume();
    if (handle_.done()) return false;
    promise.continuation = awaiting;
    return true;
  }
  T await_resume() { return handle_.promise().take(); }

 private:
  void destroy() {
    if (handle_) handle_.destroy();
  }
  Handle handle_;
};

template <class T>
Task<T> detail::Promise<T>::get_return_object() {
  return Task<T>(std::coroutine_handle<Promise>::from_promise(*this));
}
inline Task<void> detail::Promise<void>::get_return_object() {
  return Task<void>(std::coroutine_handle<Promise>::from_promise(*this));
}

// A handle on running work. Dropping it neither stops nor frees the work.
class TaskHandle {
 public:
  TaskHandle() = default;
  explicit TaskHandle(std::shared_ptr<Cancellation> cancellation)
      : cancellation_(std::move(cancellation)) {}
  // Wakes a sleeping task at its next turn; work that is past its sleep runs to its end.
  void cancel() {
    if (cancellation_) cancellation_->cancel();
  }
  explicit operator bool() const { return cancellation_ != nullptr; }

 private:
  std::shared_ptr<Cancellation> cancellation_;
};

namespace detail {

// The outermost coroutine of a running task: it belongs to the loop's task set and frees itself.
struct Root {
  struct promise_type {
    TaskSet* owner = nullptr;
    std::shared_ptr<Cancellation> cancellation;

    Root get_return_object() { return {std::coroutine_handle<promise_type>::from_promise(*this)}; }
    std::suspend_always initial_suspend() noexcept { return {}; }
    struct FinalAwaiter {
      [[nodiscard]] bool await_ready() const noexcept { return false; }
      void await_suspend(std::coroutine_handle<promise_type> self) const noexcept {
        self.promise().owner->remove(self);
        self.destroy();
      }
      void await_resume() const noexcept {}
    };
    FinalAwaiter final_suspend() noexcept { return {}; }
    void return_void() noexcept {}
    // A task that nobody awaits has nobody to tell: an exception here is a bug.
    void unhandled_exception() noexcept { std::terminate(); }
  };
  std::coroutine_handle<promise_type> handle;
};

inline Root runToEnd(Task<void> work) { co_await work; }

}  // namespace detail

// Starts `work` as a main-actor task of its own in the loop's next turn. The loop's task set owns
// it from then on.
inline TaskHandle spawn(MainActor& actor, Task<void> work) {
  auto cancellation = std::make_shared<Cancellation>();
  auto root = detail::runToEnd(std::move(work)).handle;
  root.promise().owner = &actor.tasks();
  root.promise().cancellation = cancellation;
  actor.tasks().add(root);
  // The set may have been emptied before the turn comes.
  actor.post([root, &tasks = actor.tasks()] {
    if (tasks.contains(root)) root.resume();
  });
  return TaskHandle(std::move(cancellation));
}

}  // namespace orvane
