#pragma once

#include <coroutine>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "foundation/cancellation.h"
#include "foundation/main_actor.h"
#include "foundation/subscription.h"
#include "foundation/task.h"

// What a task can wait for: time, a completion handler, work on another thread, another task.
namespace orvane {

// `co_await isCancelled()` tells whether the running task was cancelled; it never suspends.
class isCancelled {
 public:
  // Written out, because GCC 12 destroys an aggregate twice that is a temporary of an await.
  isCancelled() {}
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
