// What a task may wait for besides time, and what becomes of it when the loop ends.
#include "foundation/task_waiting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "fakes/manual_main_actor.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;

class TaskWaitingTest : public testing::Test {
 protected:
  fakes::ManualMainActor actor_;
  // Something that a coroutine holds; its use count tells whether the frame still lives.
  std::shared_ptr<int> held_ = std::make_shared<int>(0);
  std::string seen_;
};

// ---- Completions

using Resume = std::function<void(std::string)>;

Task<void> awaitCompletion(MainActor& actor, Resume* resume, std::string* seen,
                           std::shared_ptr<int> held) {
  Continuation<std::string> completion(actor, [resume](Resume given) { *resume = given; });
  *seen += co_await completion;
  held.reset();
}

TEST_F(TaskWaitingTest, ACompletionResumesInALaterTurnAndNeverInsideItself) {
  Resume resume;
  spawn(actor_, awaitCompletion(actor_, &resume, &seen_, held_));
  actor_.runUntilIdle();
  resume("answer");
  EXPECT_EQ(seen_, "");
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "answer");
}

TEST_F(TaskWaitingTest, OnlyTheFirstCompletionCounts) {
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

TEST_F(TaskWaitingTest, ACompletionMayComeFromAnotherThread) {
  Resume resume;
  spawn(actor_, awaitCompletion(actor_, &resume, &seen_, held_));
  actor_.runUntilIdle();
  std::thread([&] { resume("from afar"); }).join();
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "from afar");
}

TEST_F(TaskWaitingTest, ACompletionForADestroyedTaskIsDropped) {
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

TEST_F(TaskWaitingTest, AWorkersResultComesBackInATurnOfTheLoop) {
  actor_.holdWorkers();
  spawn(actor_, workElsewhere(actor_, &seen_));
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "");
  EXPECT_TRUE(actor_.runOneWorker());
  EXPECT_EQ(seen_, "");
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "result");
}

TEST_F(TaskWaitingTest, AWorkersResultForADestroyedTaskIsDropped) {
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

TEST_F(TaskWaitingTest, ChildrenRunSideBySideAndAreAwaitedInOrder) {
  spawn(actor_, parent(actor_, 2s, 1s, &seen_, held_));
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "begin1 begin2 ");
  actor_.advance(2s);
  EXPECT_EQ(seen_, "begin1 begin2 end2 end1 got1 got2 ");
  EXPECT_EQ(actor_.tasks().size(), 0u);
}

TEST_F(TaskWaitingTest, TheFirstChildMayEndFirst) {
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

TEST_F(TaskWaitingTest, AChildThatIsNotAwaitedRunsToItsEnd) {
  spawn(actor_, neglectfulParent(actor_, &seen_));
  actor_.advance(1s);
  EXPECT_EQ(seen_, "begin1 end1 ");
}

TEST_F(TaskWaitingTest, CancellingTheParentDoesNotWakeTheChildren) {
  auto handle = spawn(actor_, parent(actor_, 2s, 1s, &seen_, held_));
  actor_.runUntilIdle();
  handle.cancel();
  actor_.runUntilIdle();
  EXPECT_EQ(seen_, "begin1 begin2 ");
}

// ---- The end of the loop

Task<void> nest(Task<void> inner) { co_await inner; }

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
TEST_F(TaskWaitingTest, DestroyingAllFreesFramesAtEverySuspension) {
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

TEST_F(TaskWaitingTest, CancellingAtEverySuspensionWakesOnlyTheSleep) {
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

TEST_F(TaskWaitingTest, TheLoopsEndFreesWhatIsLeft) {
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
