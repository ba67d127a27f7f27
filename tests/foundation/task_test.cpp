#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "fakes/manual_main_actor.h"
#include "foundation/task_waiting.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;

class TaskTest : public testing::Test {
 protected:
  // Something that a coroutine holds; its use count tells whether the frame still lives.
  using Held = std::shared_ptr<int>;

  fakes::ManualMainActor actor_;
  Held held_ = std::make_shared<int>(0);
  std::string seen_;
};

Task<int> instantly(int value) { co_return value; }

Task<void> note(std::string* seen, std::string text) {
  *seen += text;
  co_return;
}

Task<void> sleepThenNote(MainActor& actor, Duration delay, std::string* seen, std::string text) {
  co_await sleepFor(actor, delay);
  *seen += text;
}

// ---- Starting and ending

TEST_F(TaskTest, NothingRunsBeforeTheNextTurn) {
  spawn(actor_, note(&seen_, "ran"));
  EXPECT_EQ(seen_, "");
  EXPECT_EQ(actor_.tasks().size(), 1u);
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "ran");
  EXPECT_EQ(actor_.tasks().size(), 0u);
}

Task<void> hold(std::shared_ptr<int> held) {
  ++*held;
  co_return;
}

TEST_F(TaskTest, AnUnstartedTaskIsDestroyedWithoutRunning) {
  {
    auto task = hold(held_);
    EXPECT_EQ(held_.use_count(), 2);
  }
  EXPECT_EQ(held_.use_count(), 1);
  EXPECT_EQ(*held_, 0);
}

TEST_F(TaskTest, AMovedTaskIsDestroyedOnce) {
  auto task = hold(held_);
  auto moved = std::move(task);
  moved = hold(held_);
  EXPECT_EQ(held_.use_count(), 2);
}

TEST_F(TaskTest, ASpawnedTaskThatNeverGetsItsTurnIsFreed) {
  spawn(actor_, hold(held_));
  actor_.tasks().destroyAll();
  EXPECT_EQ(held_.use_count(), 1);
  actor_.runUntilIdle();
  EXPECT_EQ(*held_, 0);
}

TEST_F(TaskTest, TasksRunInTheOrderInWhichTheyWereSpawned) {
  for (const char* text : {"a", "b", "c"}) spawn(actor_, note(&seen_, text));
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "abc");
}

TEST_F(TaskTest, DroppingTheHandleDoesNotStopTheWork) {
  { const auto handle = spawn(actor_, sleepThenNote(actor_, 1s, &seen_, "done")); }
  actor_.advance(1s);
  EXPECT_EQ(seen_, "done");
}

// ---- Values and exceptions

Task<void> addUp(std::string* seen) {
  const int sum = co_await instantly(40) + co_await instantly(2);
  *seen = std::to_string(sum);
}

TEST_F(TaskTest, AnAwaitedTaskDeliversItsValue) {
  spawn(actor_, addUp(&seen_));
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "42");
}

Task<std::unique_ptr<int>> moveOnly() { co_return std::make_unique<int>(5); }
Task<void> takeMoveOnly(std::string* seen) {
  const auto value = co_await moveOnly();
  *seen = std::to_string(*value);
}

TEST_F(TaskTest, ValuesMayBeMoveOnly) {
  spawn(actor_, takeMoveOnly(&seen_));
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "5");
}

Task<int> throwBeforeTheFirstAwait(std::shared_ptr<int> held) {
  if (held) throw std::runtime_error("early");
  co_return 1;
}
Task<int> throwAfterASleep(MainActor& actor, std::shared_ptr<int> held) {
  co_await sleepFor(actor, 1s);
  if (held) throw std::runtime_error("late");
  co_return 1;
}
Task<void> catchBoth(MainActor& actor, std::shared_ptr<int> held, std::string* seen) {
  try {
    co_await throwBeforeTheFirstAwait(held);
  } catch (const std::runtime_error& error) {
    *seen += error.what();
  }
  try {
    co_await throwAfterASleep(actor, held);
  } catch (const std::runtime_error& error) {
    *seen += error.what();
  }
}

TEST_F(TaskTest, ExceptionsReachTheAwaiterBeforeAndAfterASuspension) {
  spawn(actor_, catchBoth(actor_, held_, &seen_));
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "early");
  actor_.advance(1s);
  EXPECT_EQ(seen_, "earlylate");
  EXPECT_EQ(held_.use_count(), 1);
}

using TaskDeathTest = TaskTest;

Task<void> throwForNobody() {
  co_await instantly(1);
  throw std::runtime_error("nobody awaits this");
}

TEST_F(TaskDeathTest, AnExceptionThatNobodyAwaitsStopsTheProcess) {
  EXPECT_DEATH(
      {
        spawn(actor_, throwForNobody());
        actor_.runUntilIdle();
      },
      "");
}

// ---- Many awaits

Task<void> awaitInstantly(int times, long* sum) {
  for (int i = 0; i < times; ++i) *sum += co_await instantly(1);
}

TEST_F(TaskTest, AHundredThousandInstantAwaitsDoNotDeepenTheStack) {
  long sum = 0;
  spawn(actor_, awaitInstantly(100'000, &sum));
  actor_.runUntilIdle();
  EXPECT_EQ(sum, 100'000);
}

Task<void> awaitSleeping(MainActor& actor, int times, long* sum) {
  for (int i = 0; i < times; ++i) {
    co_await sleepFor(actor, 1ms);
    *sum += co_await instantly(1);
  }
}

TEST_F(TaskTest, ThousandsOfSleepsAndAwaitsTakeTurns) {
  long sum = 0;
  spawn(actor_, awaitSleeping(actor_, 20'000, &sum));
  actor_.advance(20s);
  EXPECT_EQ(sum, 20'000);
}

// ---- Sleeping and cancelling

TEST_F(TaskTest, ASleepEndsWhenItsTimeHasPassed) {
  spawn(actor_, sleepThenNote(actor_, 250ms, &seen_, "woke"));
  actor_.advance(249ms);
  EXPECT_EQ(seen_, "");
  actor_.advance(1ms);
  EXPECT_EQ(seen_, "woke");
}

TEST_F(TaskTest, CancellingWakesASleepInTheNextTurnAndNotAtOnce) {
  auto handle = spawn(actor_, sleepThenNote(actor_, 1h, &seen_, "woke"));
  actor_.runUntilIdle();
  handle.cancel();
  EXPECT_EQ(seen_, "");
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "woke");
  EXPECT_EQ(actor_.pendingTimers(), 0u);
  EXPECT_EQ(actor_.elapsed(), 0s);
}

TEST_F(TaskTest, CancellingTwiceWakesOnce) {
  auto handle = spawn(actor_, sleepThenNote(actor_, 1h, &seen_, "woke"));
  actor_.runUntilIdle();
  handle.cancel();
  handle.cancel();
  actor_.advance(2h);
  EXPECT_EQ(seen_, "woke");
  handle.cancel();
}

TEST_F(TaskTest, ATaskCancelledBeforeItsFirstTurnRunsWithASleepThatReturns) {
  auto handle = spawn(actor_, sleepThenNote(actor_, 1h, &seen_, "ran"));
  handle.cancel();
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "ran");
}

Task<void> sleepThenCheck(MainActor& actor, std::string* seen) {
  *seen += co_await isCancelled() ? "cancelled " : "running ";
  co_await sleepFor(actor, 1h);
  *seen += co_await isCancelled() ? "cancelled " : "running ";
}
Task<void> nest(Task<void> inner) { co_await inner; }

TEST_F(TaskTest, ACancellationReachesNestedTasks) {
  auto handle = spawn(actor_, nest(nest(sleepThenCheck(actor_, &seen_))));
  actor_.runUntilIdle();
  handle.cancel();
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "running cancelled ");
}

TEST_F(TaskTest, WorkPastItsSleepRunsToItsEnd) {
  auto handle = spawn(actor_, sleepThenCheck(actor_, &seen_));
  actor_.advance(1h);
  handle.cancel();
  EXPECT_EQ(seen_, "running running ");
}

TEST_F(TaskTest, AnEmptyHandleCancelsNothing) {
  TaskHandle handle;
  EXPECT_FALSE(handle);
  handle.cancel();
}

}  // namespace
}  // namespace orvane
