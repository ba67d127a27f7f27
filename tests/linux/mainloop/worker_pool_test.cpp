#include "linux/mainloop/worker_pool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>

// What work refers to is declared before the pool, whose end waits for it.

namespace orvane::host {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;

TEST(WorkerPool, HasNoThreadBeforeThereIsWork) {
  WorkerPool pool({2, minutes(1)});
  EXPECT_EQ(pool.threadCount(), 0);
}

TEST(WorkerPool, RunsWorkOnAnotherThread) {
  std::promise<std::thread::id> ran;
  WorkerPool pool({2, minutes(1)});
  pool.run([&] { ran.set_value(std::this_thread::get_id()); });
  EXPECT_NE(ran.get_future().get(), std::this_thread::get_id());
}

TEST(WorkerPool, RunsTwoPiecesOfWorkSideBySideAndNoMore) {
  std::promise<void> first, second;
  std::promise<void> release;
  const auto released = release.get_future().share();
  std::atomic<bool> thirdRan = false;
  std::promise<void> third;
  WorkerPool pool({2, minutes(1)});
  pool.run([&] { first.set_value(), released.wait(); });
  pool.run([&] { second.set_value(), released.wait(); });
  pool.run([&] { thirdRan = true, third.set_value(); });
  first.get_future().wait();
  second.get_future().wait();
  EXPECT_FALSE(thirdRan);
  EXPECT_EQ(pool.threadCount(), 2);
  release.set_value();
  third.get_future().wait();
}

TEST(WorkerPool, AnIdleThreadTakesTheNextWork) {
  WorkerPool pool({4, minutes(1)});
  for (int i = 0; i < 50; ++i) {
    const auto done = std::make_shared<std::promise<void>>();
    pool.run([done] { done->set_value(); });
    done->get_future().wait();
  }
  EXPECT_LE(pool.threadCount(), 4);
  EXPECT_GE(pool.threadCount(), 1);
}

TEST(WorkerPool, ThreadsEndWhenTheyHaveBeenIdleAndStartAgain) {
  WorkerPool pool({2, milliseconds(1)});
  for (int round = 0; round < 3; ++round) {
    const auto done = std::make_shared<std::promise<void>>();
    pool.run([done] { done->set_value(); });
    done->get_future().wait();
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (pool.threadCount() > 0 && std::chrono::steady_clock::now() < limit) {
      std::this_thread::yield();
    }
    EXPECT_EQ(pool.threadCount(), 0);
  }
}

TEST(WorkerPool, ClosingWaitsForWorkThatHasBegunAndDropsTheRest) {
  auto witness = std::make_shared<int>();
  const std::weak_ptr<int> dropped = witness;
  std::atomic<bool> finished = false;
  std::promise<void> begun;
  std::promise<void> release;
  WorkerPool pool({1, minutes(1)});
  pool.run([&] {
    begun.set_value();
    release.get_future().wait();
    finished = true;
  });
  pool.run([witness = std::move(witness)] { ADD_FAILURE() << "ran after the end"; });
  begun.get_future().wait();
  std::thread releaser([&] {
    while (!dropped.expired()) std::this_thread::yield();
    release.set_value();
  });
  pool.close();
  EXPECT_TRUE(finished);
  EXPECT_TRUE(dropped.expired());
  releaser.join();
  pool.run([] { ADD_FAILURE() << "taken after the end"; });
  EXPECT_EQ(pool.threadCount(), 0);
}

}  // namespace
}  // namespace orvane::host
