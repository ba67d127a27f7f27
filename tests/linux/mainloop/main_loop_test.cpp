#include "linux/mainloop/main_loop.h"

#include <gmock/gmock.h>
#include <signal.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "foundation/task_waiting.h"

namespace orvane::host {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using testing::ElementsAre;

class MainLoopTest : public testing::Test {
 protected:
  std::unique_ptr<MainLoop> loop = makeMainLoop();
  std::vector<std::string> ran;
};

TEST_F(MainLoopTest, ReturnsTheStatusItWasToldFirst) {
  loop->post([this] {
    loop->quit(3);
    loop->quit(4);
  });
  EXPECT_EQ(loop->run(), 3);
}

TEST_F(MainLoopTest, QuittingBeforeTheStartHandlesNothing) {
  loop->post([this] { ran.emplace_back("post"); });
  loop->quit(2);
  EXPECT_EQ(loop->run(), 2);
  EXPECT_TRUE(ran.empty());
}

TEST_F(MainLoopTest, GoesOnWhereItWasLeftWhenItIsRunAgain) {
  loop->quit(2);
  loop->run();
  loop->post([this] { loop->quit(5); });
  EXPECT_EQ(loop->run(), 5);
}

TEST_F(MainLoopTest, RunsPostsInOrderNeverInsideTheCall) {
  loop->post([this] {
    ran.emplace_back("one");
    loop->post([this] { ran.emplace_back("three"), loop->quit(0); });
    ran.emplace_back("one still");
  });
  loop->post([this] { ran.emplace_back("two"); });
  EXPECT_TRUE(ran.empty());
  loop->run();
  EXPECT_THAT(ran, ElementsAre("one", "one still", "two", "three"));
}

TEST_F(MainLoopTest, TakesPostsFromManyThreadsEachInItsOrder) {
  constexpr int kThreads = 4, kPosts = 2000;
  std::vector<std::vector<int>> seen(kThreads);
  int open = kThreads * kPosts;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      for (int i = 0; i < kPosts; ++i) {
        loop->post([&, t, i] {
          seen[t].push_back(i);
          if (--open == 0) loop->quit(0);
        });
      }
    });
  }
  loop->run();
  for (auto& thread : threads) thread.join();
  for (const auto& numbers : seen) {
    ASSERT_EQ(numbers.size(), kPosts);
    EXPECT_TRUE(std::ranges::is_sorted(numbers));
  }
}

TEST_F(MainLoopTest, RunsTimersInOrderOfTheirDelays) {
  const auto later = loop->after(milliseconds(30), [this] {
    ran.emplace_back("later");
    loop->quit(0);
  });
  const auto sooner = loop->after(milliseconds(10), [this] { ran.emplace_back("sooner"); });
  const auto atOnce = loop->after(milliseconds(-5), [this] { ran.emplace_back("at once"); });
  const auto never = loop->after(Duration::max(), [this] { ran.emplace_back("never"); });
  EXPECT_TRUE(ran.empty());
  loop->run();
  EXPECT_THAT(ran, ElementsAre("at once", "sooner", "later"));
}

TEST_F(MainLoopTest, ATimerNeverRunsBeforeItsDelay) {
  const auto begin = std::chrono::steady_clock::now();
  const auto timer = loop->after(milliseconds(40), [this] { loop->quit(0); });
  loop->run();
  EXPECT_GE(std::chrono::steady_clock::now() - begin, milliseconds(39));
}

TEST_F(MainLoopTest, AnEndedTimerDoesNotRun) {
  auto ended = loop->after(milliseconds(1), [this] { ran.emplace_back("ended"); });
  ended.cancel();
  const auto kept = loop->after(milliseconds(10), [this] { loop->quit(0); });
  loop->run();
  EXPECT_TRUE(ran.empty());
}

TEST_F(MainLoopTest, ATimerMayReplaceItself) {
  Subscription timer;
  int left = 3;
  std::function<void()> again = [&] {
    if (--left == 0) return loop->quit(0);
    timer = loop->after(Duration::zero(), again);
  };
  timer = loop->after(Duration::zero(), again);
  loop->run();
  EXPECT_EQ(left, 0);
}

TEST_F(MainLoopTest, NowIsTheWallClock) {
  const auto expected =
      std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch());
  EXPECT_NEAR(loop->now().secondsSince1970, expected.count(), 5);
}

TEST_F(MainLoopTest, DeliversSignalsAsTurnsOfTheLoop) {
  auto subscription = loop->onSignal(SIGTERM, [this] {
    ran.emplace_back("SIGTERM");
    loop->quit(0);
  });
  raise(SIGTERM);
  EXPECT_TRUE(ran.empty());
  loop->run();
  EXPECT_THAT(ran, ElementsAre("SIGTERM"));
}

TEST_F(MainLoopTest, KnowsOfASignalBeforeItIsDelivered) {
  auto subscription = loop->onSignal(SIGTERM, [this] { loop->quit(0); });
  EXPECT_FALSE(loop->doesSignalWait());
  raise(SIGTERM);
  EXPECT_TRUE(loop->doesSignalWait());
  loop->run();
  EXPECT_FALSE(loop->doesSignalWait());
  raise(SIGTERM);
  subscription.cancel();
  EXPECT_FALSE(loop->doesSignalWait()) << "nobody is told of it any more";
}

TEST_F(MainLoopTest, GivesTheSignalBackWithTheSubscription) {
  loop->onSignal(SIGUSR1, [] {}).cancel();
  struct sigaction current {};
  sigaction(SIGUSR1, nullptr, &current);
  EXPECT_EQ(current.sa_handler, SIG_DFL);
}

TEST_F(MainLoopTest, ASignalSubscriptionMayEndInsideItsCall) {
  Subscription subscription;
  subscription = loop->onSignal(SIGUSR2, [&] {
    subscription.cancel();
    loop->quit(0);
  });
  raise(SIGUSR2);
  EXPECT_EQ(loop->run(), 0);
}

Task<void> workAndRecord(MainLoop* loop, std::vector<std::string>* ran) {
  const auto mainThread = std::this_thread::get_id();
  std::function<bool()> work = [mainThread] { return std::this_thread::get_id() != mainThread; };
  const bool elsewhere = co_await onWorker<bool>(*loop, std::move(work));
  ran->emplace_back(elsewhere ? "on a worker" : "on the main thread");
  co_await sleepFor(*loop, milliseconds(1));
  ran->emplace_back(std::this_thread::get_id() == mainThread ? "back" : "elsewhere");
  loop->quit(0);
}

TEST_F(MainLoopTest, CarriesCoroutinesToAWorkerAndBack) {
  spawn(*loop, workAndRecord(loop.get(), &ran));
  loop->run();
  EXPECT_THAT(ran, ElementsAre("on a worker", "back"));
}

// Writes its name down when it dies.
struct Witness {
  Witness(std::vector<std::string>& list, std::string text, std::atomic<bool>* flag = nullptr)
      : ran(list), name(std::move(text)), died(flag) {}
  Witness(const Witness&) = delete;
  Witness& operator=(const Witness&) = delete;
  ~Witness() {
    ran.push_back(name);
    if (died) *died = true;
  }
  std::vector<std::string>& ran;
  std::string name;
  std::atomic<bool>* died;
};

Task<void> sleepForever(MainLoop* loop, std::shared_ptr<Witness>) {
  co_await sleepFor(*loop, hours(1));
}

TEST_F(MainLoopTest, EndsByDestroyingCoroutinesThenWorkersThenPosts) {
  std::atomic<bool> begun = false, died = false;
  spawn(*loop, sleepForever(loop.get(), std::make_shared<Witness>(ran, "coroutine", &died)));
  loop->post([this] { loop->quit(0); });
  loop->run();
  loop->runOnWorker([&, self = loop.get()] {
    begun = true;
    while (!died) std::this_thread::yield();
    self->post([witness = std::make_shared<Witness>(ran, "post")] { FAIL() << "too late"; });
  });
  while (!begun) std::this_thread::yield();
  loop.reset();
  EXPECT_THAT(ran, ElementsAre("coroutine", "post"));
}

TEST_F(MainLoopTest, ATimerSubscriptionMayOutliveTheLoop) {
  auto timer = loop->after(hours(1), [] {});
  loop.reset();
  timer.cancel();
  EXPECT_FALSE(timer);
}

}  // namespace
}  // namespace orvane::host
