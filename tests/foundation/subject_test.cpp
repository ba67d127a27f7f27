#include "foundation/subject.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace orvane {
namespace {

TEST(Subject, TellsObserversInTheOrderOfTheirSubscriptions) {
  Subject<int> subject;
  std::string seen;
  const auto a = subject.subscribe([&](int value) { seen += "a" + std::to_string(value); });
  const auto b = subject.subscribe([&](int value) { seen += "b" + std::to_string(value); });
  subject.send(1);
  subject.send(2);
  EXPECT_EQ(seen, "a1b1a2b2");
}

TEST(Subject, AnObserverThatSubscribesDuringASendHearsOfTheNextValue) {
  Subject<int> subject;
  std::vector<int> late;
  std::vector<Subscription> kept;
  kept.push_back(subject.subscribe([&](int) {
    if (kept.size() == 1) {
      kept.push_back(subject.subscribe([&](int value) { late.push_back(value); }));
    }
  }));
  subject.send(1);
  EXPECT_TRUE(late.empty());
  subject.send(2);
  EXPECT_EQ(late, std::vector<int>{2});
}

TEST(Subject, AnObserverMayEndItselfAndOthersDuringASend) {
  Subject<> subject;
  std::string seen;
  Subscription a, b, c;
  a = subject.subscribe([&] {
    seen += "a";
    a.cancel();
    c.cancel();
  });
  b = subject.subscribe([&] { seen += "b"; });
  c = subject.subscribe([&] { seen += "c"; });
  subject.send();
  subject.send();
  EXPECT_EQ(seen, "abb");
  EXPECT_EQ(subject.observerCount(), 1u);
}

TEST(Subject, ASendWithinASendIsDeliveredAtOnce) {
  Subject<int> subject;
  std::string seen;
  const auto a = subject.subscribe([&](int value) {
    seen += "a" + std::to_string(value);
    if (value == 1) subject.send(2);
  });
  const auto b = subject.subscribe([&](int value) { seen += "b" + std::to_string(value); });
  subject.send(1);
  EXPECT_EQ(seen, "a1a2b2b1");
}

TEST(Subject, MayBeDestroyedByAnObserver) {
  auto subject = std::make_unique<Subject<>>();
  int heard = 0;
  const auto a = subject->subscribe([&] {
    ++heard;
    subject.reset();
  });
  subject->send();
  EXPECT_EQ(heard, 1);
}

TEST(Subscription, EndsOnceWhenDestroyedReplacedOrMoved) {
  int ended = 0;
  {
    Subscription first([&] { ++ended; });
    Subscription second(std::move(first));
    EXPECT_FALSE(first);
    first.cancel();
    EXPECT_EQ(ended, 0);
    second = Subscription([&] { ended += 10; });
    EXPECT_EQ(ended, 1);
    second.cancel();
    second.cancel();
    EXPECT_EQ(ended, 11);
  }
  EXPECT_EQ(ended, 11);
}

TEST(Subscription, MayBeAssignedToItself) {
  int ended = 0;
  Subscription subscription([&] { ++ended; });
  auto& same = subscription;
  subscription = std::move(same);
  EXPECT_EQ(ended, 0);
  EXPECT_TRUE(subscription);
}

}  // namespace
}  // namespace orvane
