#pragma once

#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "foundation/main_actor.h"
#include "foundation/subject.h"

namespace orvane {

// Whether a task was asked to stop. Only sleeps and `co_await isCancelled()` heed it.
class Cancellation {
 public:
  [[nodiscard]] bool isCancelled() const { return cancelled_; }
  void cancel() {
    cancelled_ = true;
    onCancel_.send();
  }
  Subscription onCancel(std::function<void()> wake) { return onCancel_.subscribe(std::move(wake)); }

 private:
  bool cancelled_ = false;
  Subject<> onCancel_;
};

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

// `co_await isCancelled()` tells whether the running task was cancelled; it never suspends.
class isCancelled {
 public:
  // Written out, because GCC 12 destroys an aggregate twice that is a temporary of an await.
  isCancelled() {}  // NOLINT(modernize-use-equals-default)
  [[nodiscard]] bool await_ready() const noexcept { return false; }
  template <class Promise>
  bool await_suspend(std::coroutine_handle<Promise> self) {
    cancellation_ = self.promise().cancellation;
    return false;
  }
  [[nodiscard]] bool await_resume() const noexcept {
    return cancellation_ && cancellation_->isCancelled();
  }

 private:
  std::shared_ptr<Cancellation> cancellation_;
};

// `co_await sleepFor(actor, delay)` returns when the delay has passed or, early, in the turn after
// the task was cancelled.
class sleepFor {
 public:
  sleepFor(MainActor& actor, Duration delay) : actor_(actor), delay_(delay) {}
  [[nodiscard]] bool await_ready() const noexcept { return false; }
  template <class Promise>
  void await_suspend(std::coroutine_handle<Promise> self) {
    auto cancellation = self.promise().cancellation;
    const bool already = cancellation && cancellation->isCancelled();
    timer_ = actor_.after(already ? Duration::zero() : delay_, [self] { self.resume(); });
    if (!cancellation || already) return;
    // Replacing the timer ends the old one, so the coroutine is resumed exactly once, and if it is
    // destroyed meanwhile both go with it.
    wake_ = cancellation->onCancel(
        [this, self] { timer_ = actor_.after(Duration::zero(), [self] { self.resume(); }); });
  }
  void await_resume() noexcept {}

 private:
  MainActor& actor_;
  Duration delay_;
  Subscription timer_;
  Subscription wake_;
};

namespace detail {

// Where a result that comes from elsewhere waits for its coroutine. Shared between the two, so
// either may vanish first.
template <class T>
struct Mailbox {
  std::optional<T> value;
  std::coroutine_handle<> waiting;
};

}  // namespace detail

// Awaits one call of a completion handler. `begin` is called at once with the function to be
// called, from any thread, with the result; later calls are ignored. The coroutine goes on in a
// later turn of the loop, never inside the caller of the completion. If the coroutine is destroyed
// first the result is dropped.
template <class T>
class Continuation {
 public:
  using Resume = std::function<void(T)>;
  Continuation(MainActor& actor, std::function<void(Resume)> begin)
      : actor_(actor), begin_(std::move(begin)) {}
  Continuation(Continuation&&) = delete;
  ~Continuation() {
    if (mailbox_) mailbox_->waiting = nullptr;
  }

  [[nodiscard]] bool await_ready() const noexcept { return false; }
  void await_suspend(std::coroutine_handle<> self) {
    mailbox_ = std::make_shared<detail::Mailbox<T>>();
    mailbox_->waiting = self;
    begin_([&actor = actor_, mailbox = mailbox_](T value) {
      auto carried = std::make_shared<T>(std::move(value));
      actor.post([mailbox, carried] {
        if (!mailbox->waiting) return;
        mailbox->value.emplace(std::move(*carried));
        std::exchange(mailbox->waiting, nullptr).resume();
      });
    });
  }
  T await_resume() { return std::move(*mailbox_->value); }

 private:
  MainActor& actor_;
  std::function<void(Resume)> begin_;
  std::shared_ptr<detail::Mailbox<T>> mailbox_;
};

// Runs `work` on a worker thread and comes back to the main actor with what it returned.
template <class T>
Task<T> onWorker(MainActor& actor, std::function<T()> work) {
  std::function<void(std::function<void(T)>)> begin = [&actor,
                                                       &work](std::function<void(T)> resume) {
    actor.runOnWorker([work, resume = std::move(resume)] { resume(work()); });
  };
  co_return co_await Continuation<T>(actor, std::move(begin));
}

// Work that runs beside its parent and is awaited later: `ChildTask a(actor, f()); ChildTask
// b(actor, g()); co_await a.value(); co_await b.value();`. Both children have begun, in order, by
// the loop's next turn. A child that is not awaited runs to its end all the same. Children do not
// inherit cancellation: what is cancelled here are sleeps, and children do not sleep.
template <class T>
class ChildTask {
 public:
  ChildTask(MainActor& actor, Task<T> work) : mailbox_(std::make_shared<detail::Mailbox<T>>()) {
    spawn(actor, run(std::move(work), mailbox_));
  }

  struct Awaiter {
    std::shared_ptr<detail::Mailbox<T>> mailbox;
    explicit Awaiter(std::shared_ptr<detail::Mailbox<T>> box) : mailbox(std::move(box)) {}
    Awaiter(Awaiter&&) = delete;
    ~Awaiter() { mailbox->waiting = nullptr; }
    [[nodiscard]] bool await_ready() const noexcept { return mailbox->value.has_value(); }
    void await_suspend(std::coroutine_handle<> self) { mailbox->waiting = self; }
    T await_resume() { return std::move(*mailbox->value); }
  };
  [[nodiscard]] Awaiter value() { return Awaiter(mailbox_); }

 private:
  static Task<void> run(Task<T> work, std::shared_ptr<detail::Mailbox<T>> mailbox) {
    mailbox->value.emplace(co_await work);
    if (mailbox->waiting) std::exchange(mailbox->waiting, nullptr).resume();
  }
  std::shared_ptr<detail::Mailbox<T>> mailbox_;
};

}  // namespace orvane
