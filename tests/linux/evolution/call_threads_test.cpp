#include "linux/evolution/call_threads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include "gio/private_bus.h"
#include "linux/evolution/call.h"
#include "linux/mainloop/main_loop.h"

namespace orvane::host {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// Far beyond what anything here takes.
constexpr seconds patience{60};
constexpr int most = 64;

// A place where calls wait until they are let go, shared with those that outlive their test.
class Gate {
 public:
  // On a call's thread.
  void pass() {
    std::unique_lock lock(mutex_);
    ++begun_;
    changed_.notify_all();
    changed_.wait(lock, [this] { return isOpen_; });
    ++over_;
    changed_.notify_all();
  }
  void open() {
    const std::lock_guard lock(mutex_);
    isOpen_ = true;
    changed_.notify_all();
  }
  bool hasBegunWithin(std::chrono::nanoseconds time, int count) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, time, [&] { return begun_ >= count; });
  }
  bool isOverWithin(std::chrono::nanoseconds time, int count) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, time, [&] { return over_ >= count; });
  }
  int begun() {
    const std::lock_guard lock(mutex_);
    return begun_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  int begun_ = 0;
  int over_ = 0;
  bool isOpen_ = false;
};

class CallThreadsTest : public testing::Test {
 protected:
  ~CallThreadsTest() override {
    gate->open();
    threads->close();
  }

  std::unique_ptr<MainLoop> loop = makeMainLoop();
  // Whoever ends them waits for those that are under way.
  std::shared_ptr<CallThreads> threads = std::make_shared<CallThreads>(*loop, patience);
  std::shared_ptr<Gate> gate = std::make_shared<Gate>();
};

TEST_F(CallThreadsTest, ACallIsMadeElsewhereAndItsResultComesToTheMainThread) {
  const auto here = std::this_thread::get_id();
  std::thread::id made;
  std::thread::id answered;
  const auto question = callOnThread<std::thread::id>(
      *threads, [](GCancellable*) { return std::this_thread::get_id(); },
      [&](std::thread::id result) {
        made = result;
        answered = std::this_thread::get_id();
      });
  EXPECT_EQ(answered, std::thread::id()) << "never before the call has returned";
  ASSERT_TRUE(gio::eventually([&] { return answered != std::thread::id(); }));
  EXPECT_EQ(answered, here);
  EXPECT_NE(made, here);
}

TEST_F(CallThreadsTest, OneThatIsGivenUpWhileItIsUnderWayIsCancelledAndAnswersNobody) {
  using Held = std::shared_ptr<std::atomic<bool>>;
  std::atomic<bool> wasCancelled = false;
  bool isAnswered = false;
  auto held = std::make_shared<std::atomic<bool>>();
  const std::weak_ptr<std::atomic<bool>> result = held;
  auto question = callOnThread<Held>(
      *threads,
      [&, gate = gate, held = std::move(held)](GCancellable* cancellable) {
        gate->pass();
        wasCancelled = g_cancellable_is_cancelled(cancellable) != FALSE;
        return held;
      },
      [&](const Held&) { isAnswered = true; });
  ASSERT_TRUE(gate->hasBegunWithin(patience, 1));
  question.cancel();
  gate->open();
  EXPECT_TRUE(gio::eventually([&] { return result.expired(); })) << "what it brought is dropped";
  EXPECT_TRUE(wasCancelled);
  EXPECT_FALSE(isAnswered);
}

TEST_F(CallThreadsTest, OneThatIsGivenUpBeforeItsTurnIsNeverMade) {
  for (int number = 0; number < most; ++number) threads->run([gate = gate] { gate->pass(); });
  ASSERT_TRUE(gate->hasBegunWithin(patience, most));
  std::atomic<bool> isMade = false;
  auto givenUp = callOnThread<bool>(
      *threads, [&](GCancellable*) { return isMade.exchange(true); }, [](bool) {});
  givenUp.cancel();
  bool isNextAnswered = false;
  const auto next = callOnThread<bool>(
      *threads, [](GCancellable*) { return true; }, [&](bool) { isNextAnswered = true; });
  gate->open();
  ASSERT_TRUE(gio::eventually([&] { return isNextAnswered; }));
  threads->close();
  EXPECT_FALSE(isMade);
}

TEST_F(CallThreadsTest, AServiceThatHangsHasSoManyThreadsAndNoMore) {
  for (int number = 0; number < most + 6; ++number) threads->run([gate = gate] { gate->pass(); });
  ASSERT_TRUE(gate->hasBegunWithin(patience, most));
  EXPECT_FALSE(gate->hasBegunWithin(milliseconds(300), most + 1));
  gate->open();
  EXPECT_TRUE(gate->isOverWithin(patience, most + 6)) << "the others have their turn then";
}

TEST_F(CallThreadsTest, TheEndWaitsForACallThatIsAboutToReturn) {
  std::atomic<bool> isOver = false;
  threads->run([&, gate = gate] {
    gate->pass();
    isOver = true;
  });
  ASSERT_TRUE(gate->hasBegunWithin(patience, 1));
  gate->open();
  threads->close();
  EXPECT_TRUE(isOver);
}

TEST_F(CallThreadsTest, TheEndDoesNotWaitForACallThatIsStuckNorHearOfItAgain) {
  threads = std::make_shared<CallThreads>(*loop, milliseconds(10));
  bool isAnswered = false;
  const auto question = callOnThread<bool>(
      *threads,
      [gate = gate](GCancellable*) {
        gate->pass();
        return true;
      },
      [&](bool) { isAnswered = true; });
  for (int number = 0; number < most; ++number) threads->run([gate = gate] { gate->pass(); });
  ASSERT_TRUE(gate->hasBegunWithin(patience, most));
  const std::weak_ptr<CallThreads> held = threads;
  threads->close();
  EXPECT_FALSE(gate->isOverWithin(milliseconds(0), 1)) << "nobody has let them go";
  threads->run([gate = gate] { gate->pass(); });
  threads.reset();
  EXPECT_FALSE(held.expired()) << "the threads that are stuck keep what they need";
  loop.reset();
  gate->open();
  ASSERT_TRUE(gate->isOverWithin(patience, most));
  EXPECT_EQ(gate->begun(), most) << "whatever had not begun was dropped";
  EXPECT_TRUE(gio::eventually([&] { return held.expired(); }));
  EXPECT_FALSE(isAnswered);
  loop = makeMainLoop();
  threads = std::make_shared<CallThreads>(*loop);
}

}  // namespace
}  // namespace orvane::host
