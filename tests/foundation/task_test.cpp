#include "foundation/task.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "fakes/manual_main_actor.h"

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

// ---- Completions

using Resume = std::function<void(std::string)>;

Task<void> awaitCompletion(MainActor& actor, Resume* resume, std::string* seen,
                           std::shared_ptr<int> held) {
  Continuation<std::string> completion(actor, [resume](Resume given) { *resume = given; });
  *seen += co_await completion;
  held.reset();
}

TEST_F(TaskTest, ACompletionResumesInALaterTurnAndNeverInsideItself) {
  Resume resume;
  spawn(actor_, awaitCompletion(actor_, &resume, &seen_, held_));
  actor_.runUntilIdle();
  resume("answer");
  EXPECT_EQ(seen_, "");
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "answer");
}

TEST_F(TaskTest, OnlyTheFirstCompletionCounts) {
  Resume resume;
  spawn(actor_, awaitCompletion(actor_, &resume, &seen_, held_));
  actor_.runUntilIdle();
  resume("one ");
  resume("two ");
  actor_.runUntilIdle();
  resume("three ");
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "one ");
}

TEST_F(TaskTest, ACompletionMayComeFromAnotherThread) {
  Resume resume;
  spawn(actor_, awaitCompletion(actor_, &resume, &seen_, held_));
  actor_.runUntilIdle();
  std::thread([&] { resume("from afar"); }).join();
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "from afar");
}

TEST_F(TaskTest, ACompletionForADestroyedTaskIsDropped) {
  Resume resume;
  spawn(actor_, awaitCompletion(actor_, &resume, &seen_, held_));
  actor_.runUntilIdle();
  resume("in flight ");
  actor_.tasks().destroyAll();
  EXPECT_EQ(held_.use_count(), 1);
  actor_.runUntilIdle();
  resume("too late");
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "");
}

// ---- Workers

Task<void> workElsewhere(MainActor& actor, std::string* seen) {
  std::function<std::string()> work = [] { return std::string("result"); };
  auto task = onWorker(actor, std::move(work));
  *seen += co_await task;
}

TEST_F(TaskTest, AWorkersResultComesBackInATurnOfTheLoop) {
  actor_.holdWorkers();
  spawn(actor_, workElsewhere(actor_, &seen_));
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "");
  EXPECT_TRUE(actor_.runOneWorker());
  EXPECT_EQ(seen_, "");
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "result");
}

TEST_F(TaskTest, AWorkersResultForADestroyedTaskIsDropped) {
  actor_.holdWorkers();
  spawn(actor_, workElsewhere(actor_, &seen_));
  actor_.runUntilIdle();
  actor_.tasks().destroyAll();
  EXPECT_TRUE(actor_.runOneWorker());
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "");
}

// ---- Children

Task<int> sleepingChild(MainActor& actor, Duration delay, int value, std::string* seen) {
  *seen += "begin" + std::to_string(value) + " ";
  co_await sleepFor(actor, delay);
  *seen += "end" + std::to_string(value) + " ";
  co_return value;
}

Task<void> parent(MainActor& actor, Duration first, Duration second, std::string* seen,
                  std::shared_ptr<int> held) {
  ChildTask<int> one(actor, sleepingChild(actor, first, 1, seen));
  ChildTask<int> two(actor, sleepingChild(actor, second, 2, seen));
  const int a = co_await one.value();
  *seen += "got" + std::to_string(a) + " ";
  const int b = co_await two.value();
  *seen += "got" + std::to_string(b) + " ";
  held.reset();
}

TEST_F(TaskTest, ChildrenRunSideBySideAndAreAwaitedInOrder) {
  spawn(actor_, parent(actor_, 2s, 1s, &seen_, held_));
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "begin1 begin2 ");
  actor_.advance(2s);
  EXPECT_EQ(seen_, "begin1 begin2 end2 end1 got1 got2 ");
  EXPECT_EQ(actor_.tasks().size(), 0u);
}

TEST_F(TaskTest, TheFirstChildMayEndFirst) {
  spawn(actor_, parent(actor_, 1s, 2s, &seen_, held_));
  actor_.advance(1s);
  EXPECT_EQ(seen_, "begin1 begin2 end1 got1 ");
  actor_.advance(1s);
  EXPECT_EQ(seen_, "begin1 begin2 end1 got1 end2 got2 ");
}

Task<void> neglectfulParent(MainActor& actor, std::string* seen) {
  ChildTask<int> child(actor, sleepingChild(actor, 1s, 1, seen));
  co_return;
}

TEST_F(TaskTest, AChildThatIsNotAwaitedRunsToItsEnd) {
  spawn(actor_, neglectfulParent(actor_, &seen_));
  actor_.advance(1s);
  EXPECT_EQ(seen_, "begin1 end1 ");
}

TEST_F(TaskTest, CancellingTheParentDoesNotWakeTheChildren) {
  auto handle = spawn(actor_, parent(actor_, 2s, 1s, &seen_, held_));
  actor_.runUntilIdle();
  handle.cancel();
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "begin1 begin2 ");
}

// ---- The end of the loop

Task<void> everySuspension(MainActor& actor, std::shared_ptr<int> held, Resume* resume) {
  co_await sleepFor(actor, 1s);
  ++*held;
  Continuation<std::string> completion(actor, [resume](Resume given) { *resume = given; });
  co_await completion;
  ++*held;
  std::function<int()> work = [held] { return *held; };
  auto elsewhere = onWorker(actor, std::move(work));
  co_await elsewhere;
  ++*held;
  std::string unused;
  ChildTask<int> child(actor, sleepingChild(actor, 1s, 1, &unused));
  co_await child.value();
  ++*held;
}

// Destroys all tasks when the coroutine has come as far as `suspensions`; every frame, and what it
// holds, must go, whatever it was waiting for.
TEST_F(TaskTest, DestroyingAllFreesFramesAtEverySuspension) {
  for (int suspensions = 0; suspensions < 4; ++suspensions) {
    fakes::ManualMainActor actor;
    actor.holdWorkers();
    const auto held = std::make_shared<int>(0);
    Resume resume;
    spawn(actor, nest(everySuspension(actor, held, &resume)));
    actor.runUntilIdle();
    if (suspensions >= 1) actor.advance(1s);
    if (suspensions >= 2) resume("");
    actor.runUntilIdle();
    if (suspensions >= 3) actor.runOneWorker();
    actor.runUntilIdle();
    ASSERT_EQ(*held, suspensions);
    actor.tasks().destroyAll();
    EXPECT_EQ(actor.tasks().size(), 0u);
    while (actor.runOneWorker()) {
    }
    resume = nullptr;
    actor.advance(10s);
    EXPECT_EQ(*held, suspensions);
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_EQ(actor.pendingTimers(), 0u);
  }
}

TEST_F(TaskTest, CancellingAtEverySuspensionWakesOnlyTheSleep) {
  for (int suspensions = 0; suspensions < 4; ++suspensions) {
    fakes::ManualMainActor actor;
    actor.holdWorkers();
    const auto held = std::make_shared<int>(0);
    Resume resume;
    auto handle = spawn(actor, everySuspension(actor, held, &resume));
    actor.runUntilIdle();
    if (suspensions >= 1) actor.advance(1s);
    if (suspensions >= 2) resume("");
    actor.runUntilIdle();
    if (suspensions >= 3) actor.runOneWorker();
    actor.runUntilIdle();
    handle.cancel();
    actor.runUntilIdle();
    EXPECT_EQ(*held, std::max(suspensions, 1));
  }
}

TEST_F(TaskTest, TheLoopsEndFreesWhatIsLeft) {
  {
    fakes::ManualMainActor actor;
    Resume resume;
    spawn(actor, everySuspension(actor, held_, &resume));
    actor.runUntilIdle();
    EXPECT_GT(held_.use_count(), 1);
  }
  EXPECT_EQ(held_.use_count(), 1);
}

}  // namespace
}  // namespace orvane
