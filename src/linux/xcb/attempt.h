#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace orvane::host::xcb {

// Runs the work on a thread of its own, on which no signals are delivered, and which nobody waits
// for when the program ends. Throws std::system_error where there can be no further thread.
void startAside(std::function<void()> work);

// Tells another thread that something is done: its descriptor becomes readable, and stays so.
class DoneSign {
 public:
  DoneSign();  // throws std::system_error
  DoneSign(const DoneSign&) = delete;
  DoneSign& operator=(const DoneSign&) = delete;
  ~DoneSign();

  [[nodiscard]] int descriptor() const { return descriptor_; }
  void give() const;
  // Whether it was given in time. A signal ends the wait, too, since what it asks for is only done
  // by the loop; and so does a wait that is in vain, which is asked twice a second where it is
  // known.
  [[nodiscard]] bool waitFor(std::chrono::nanoseconds patience,
                             const std::function<bool()>& isInVain = {}) const;

 private:
  const int descriptor_;
};

// Something that may never come to an end, aside. xcb has no function that connects within a time,
// and none that connects on a socket of ours with the authority that it would find; so one that
// waits for ever does so where it is in nobody's way. What comes when nobody waits for it any more
// is destroyed where it came.
template <class Result>
class Attempt {
 public:
  // Throws as startAside() does. The work may be on its way for longer than this object lives.
  explicit Attempt(std::function<Result()> work) : state_(std::make_shared<State>()) {
    startAside([state = state_, work = std::move(work)] {
      auto result = work();
      const std::scoped_lock lock(state->mutex);
      state->result = std::move(result);
      state->done.give();
    });
  }

  [[nodiscard]] const DoneSign& done() const { return state_->done; }
  // What came of it, once it is done.
  [[nodiscard]] Result take() {
    const std::scoped_lock lock(state_->mutex);
    return std::move(state_->result);
  }

 private:
  struct State {
    DoneSign done;
    std::mutex mutex;
    Result result{};
  };
  const std::shared_ptr<State> state_;
};

}  // namespace orvane::host::xcb
