#include "linux/mainloop/timer_queue.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "foundation/subscription.h"

namespace orvane::host {
namespace {

using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

class TimerQueueTest : public testing::Test {
 protected:
  TimerQueue::Key add(int second, const std::string& name) {
    return queue.add(seconds(second), [this, name] { ran.push_back(name); });
  }
  TimerQueue queue;
  std::vector<std::string> ran;
};

TEST_F(TimerQueueTest, RunsWhatIsDueInOrderOfDeadlines) {
  add(3, "late");
  add(1, "early");
  add(2, "middle");
  add(9, "not yet");
  queue.run(seconds(3));
  EXPECT_THAT(ran, ElementsAre("early", "middle", "late"));
  EXPECT_EQ(queue.nextDeadline(), seconds(9));
}

TEST_F(TimerQueueTest, KeepsTheOrderOfAddingAmongEqualDeadlines) {
  add(1, "first");
  add(1, "second");
  add(1, "third");
  queue.run(seconds(1));
  EXPECT_THAT(ran, ElementsAre("first", "second", "third"));
}

TEST_F(TimerQueueTest, HasNoDeadlineWhenEmpty) {
  EXPECT_EQ(queue.nextDeadline(), std::nullopt);
  queue.run(seconds(100));
  EXPECT_THAT(ran, IsEmpty());
}

TEST_F(TimerQueueTest, NeverRunsARemovedTimer) {
  const auto key = add(1, "removed");
  add(2, "kept");
  queue.remove(key);
  queue.remove(key);
  EXPECT_EQ(queue.nextDeadline(), seconds(2));
  queue.run(seconds(5));
  EXPECT_THAT(ran, ElementsAre("kept"));
}

TEST_F(TimerQueueTest, ATimerMayRemoveOneThatIsDueAfterIt) {
  TimerQueue::Key victim;
  queue.add(seconds(1), [&] { queue.remove(victim); });
  victim = add(1, "victim");
  queue.run(seconds(1));
  EXPECT_THAT(ran, IsEmpty());
}

TEST_F(TimerQueueTest, ATimerMayRemoveItselfAndStaysAliveUntilItReturns) {
  TimerQueue::Key self;
  auto witness = std::make_shared<int>(7);
  std::weak_ptr<int> alive = witness;
  self = queue.add(seconds(1), [&, witness = std::move(witness)] {
    queue.remove(self);
    EXPECT_FALSE(alive.expired());
    ran.push_back(std::to_string(*witness));
  });
  queue.run(seconds(1));
  EXPECT_THAT(ran, ElementsAre("7"));
  EXPECT_TRUE(alive.expired());
}

TEST_F(TimerQueueTest, ATimerAddedWhileRunningWaitsForTheNextRunEvenIfItIsDue) {
  queue.add(seconds(2), [&] {
    add(1, "new and overdue");
    add(2, "new and due");
  });
  add(3, "old");
  queue.run(seconds(3));
  EXPECT_THAT(ran, ElementsAre("old"));
  EXPECT_EQ(queue.nextDeadline(), seconds(1));
  queue.run(seconds(3));
  EXPECT_THAT(ran, ElementsAre("old", "new and overdue", "new and due"));
}

TEST_F(TimerQueueTest, RemovingATimerThatHoldsTheTokenOfAnotherRemovesBoth) {
  const auto other = add(2, "other");
  auto token = std::make_shared<Subscription>([this, other] { queue.remove(other); });
  const auto outer = queue.add(seconds(1), [token] {});
  token.reset();
  queue.remove(outer);
  EXPECT_EQ(queue.nextDeadline(), std::nullopt);
}

}  // namespace
}  // namespace orvane::host
