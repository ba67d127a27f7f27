#include <gmock/gmock.h>

#include <algorithm>

#include "account_fixture.h"

namespace orvane::host {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// Of calendars that are opened at once, and of a service that is slower than any one limit.
class AccountPatienceTest : public AccountProviderTest {
 protected:
  void addMany() {
    for (int number = 0; number < many; ++number) {
      const auto name = std::to_string(number);
      world->add(name, name, event, name);
    }
  }
  [[nodiscard]] long openings(const std::string& source) const {
    return std::count(world->opened.begin(), world->opened.end(), source);
  }

  static constexpr int many = 130;
};

TEST_F(AccountPatienceTest, CalendarsThatAreAnsweredOneAfterAnotherAreAllWaitedFor) {
  addMany();
  world->pace = milliseconds(500);
  open();
  actor.advance(seconds(65));
  EXPECT_THAT(world->fetched, SizeIs(many)) << "they are all open";
  actor.advance(seconds(66));
  EXPECT_THAT(titles(), SizeIs(many));
  EXPECT_THAT(world->opened, SizeIs(many)) << "and none of them was given up";
  EXPECT_EQ(provider->state().events, KindAccess::readable);
}

TEST_F(AccountPatienceTest, WhatWasReadLaterIsNotReplacedByWhatTookLongerToRead) {
  std::vector<TextReading::Done> waiting;
  options.readText = [&](const std::string&, const ReadWindow&, const ShownSpan&,
                         const TextReading::Done& done) { waiting.push_back(done); };
  const auto answer = [&](std::size_t which, const std::string& text) {
    const auto content = contentOfPlain(text, {0, now + 30 * day, zone}, {});
    waiting.at(which)(&*content, TextFailure::text);
    actor.runUntilIdle();
  };
  world->add("w", "Work", event, "");
  open();
  world->change("w", "");
  actor.advance(milliseconds(100));
  ASSERT_THAT(waiting, SizeIs(2));
  answer(1, "Newer");
  answer(0, "Older");
  EXPECT_THAT(titles(), ElementsAre("Newer"));
}

TEST_F(AccountPatienceTest, TheSameHoldsWhenTheyAreReadAgain) {
  addMany();
  open();
  takeCounts();
  world->pace = milliseconds(500);
  titles(30 * day, 37 * day);
  actor.advance(seconds(66));
  EXPECT_EQ(reads, many);
  EXPECT_THAT(world->opened, SizeIs(many));
}

TEST_F(AccountPatienceTest, OneThatHangsIsGivenUpWhenTheOthersHaveTheirAnswers) {
  for (const char* name : {"a", "b", "c"}) world->add(name, name, event, name);
  world->add("slow", "Slow", event, "Late");
  world->stuck = {"slow"};
  world->pace = seconds(5);
  open();
  actor.advance(seconds(30));  // for three openings and three questions
  EXPECT_THAT(titles(), ElementsAre("a", "b", "c"));
  actor.advance(milliseconds(19999));
  EXPECT_EQ(world->openClients, 3);
  world->stuck = {};
  actor.advance(seconds(1));
  EXPECT_EQ(openings("slow"), 1) << "it is not waited for any more, and left in peace for a second";
  actor.advance(milliseconds(1));
  EXPECT_EQ(openings("slow"), 2);
}

TEST_F(AccountPatienceTest, WhatOthersAskLaterIsNoReasonToWaitForOneThatHangs) {
  world->add("slow", "Slow", event, "Late");
  world->add("w", "Work", event, "Standup");
  world->hanging = {"slow"};
  open();
  for (int second = 1; second < 20; ++second) {
    world->change("w", "Standup" + std::to_string(second));
    actor.advance(seconds(1));
  }
  EXPECT_EQ(world->openClients, 2);
  EXPECT_THAT(titles(), ElementsAre("Standup19"));
  actor.advance(seconds(1));
  EXPECT_EQ(world->openClients, 1);
}

TEST_F(AccountPatienceTest, PatienceHasAnEndWhateverTheOthersAreTold) {
  addMany();
  world->add("slow", "Slow", event, "Late");
  world->stuck = {"slow"};
  world->pace = seconds(2);
  open();
  actor.advance(minutes(3) - milliseconds(1));
  EXPECT_THAT(titles(), IsEmpty()) << "all are to be opened before any is read";
  EXPECT_EQ(world->openClients, 89);
  EXPECT_THAT(world->opened, SizeIs(many + 1)) << "once each";
  actor.advance(seconds(1) + milliseconds(1));
  EXPECT_THAT(world->opened, SizeIs(2 * (many + 1) - 89))
      << "once more, whoever was not opened yet";
  world->stuck = {};
  world->pace = Duration::zero();
  actor.advance(minutes(5));
  EXPECT_THAT(titles(), SizeIs(many + 1)) << "nothing is lost";
}

}  // namespace
}  // namespace orvane::host
