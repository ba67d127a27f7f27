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

TEST_F(AccountProviderTest, AServiceThatHangsDelaysNobodyBeyondItsLimits) {
  world->add("w", "Work", event, "Standup");
  world->hangs = true;
  open();
  actor.advance(milliseconds(999));
  EXPECT_EQ(readies, 0);
  actor.advance(milliseconds(1));
  EXPECT_EQ(readies, 1);
  EXPECT_FALSE(provider->state().failure.has_value()) << "it may still answer";
  actor.advance(seconds(19));
  EXPECT_TRUE(provider->state().failure.has_value());
  actor.advance(milliseconds(10));
  EXPECT_EQ(changes, 1);
  world->hangs = false;
  actor.advance(seconds(1));
  EXPECT_FALSE(provider->state().failure.has_value());
  EXPECT_THAT(titles(), ElementsAre("Standup"));
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(readies, 1);
}

TEST_F(AccountProviderTest, AServiceThatFailsIsTriedAgainAtGrowingDistances) {
  world->fails = true;
  open();
  EXPECT_EQ(readies, 1);
  EXPECT_TRUE(provider->state().failure.has_value());
  for (const auto wait : {seconds(1), seconds(2), seconds(4), seconds(8)}) {
    EXPECT_EQ(actor.nextTimerIn(), wait);
    actor.advance(wait);
  }
  actor.advance(minutes(60));
  EXPECT_LE(actor.nextTimerIn(), minutes(5));
  world->add("w", "Work", event, "Standup");
  world->fails = false;
  actor.advance(minutes(5));
  EXPECT_THAT(titles(), ElementsAre("Standup"));
}

TEST_F(AccountProviderTest, ACalendarThatHangsDelaysNoneOfItsNeighbours) {
  world->add("slow", "Slow", event, "Late");
  world->add("w", "Work", event, "Standup");
  world->hanging = {"slow"};
  open();
  EXPECT_THAT(titles(), ElementsAre("Standup"));
  EXPECT_EQ(readies, 0);
  actor.advance(seconds(1));
  EXPECT_EQ(readies, 1);
  world->change("w", "Standup Lunch");
  actor.advance(milliseconds(100));
  EXPECT_EQ(changes, 1);
  EXPECT_THAT(titles(), ElementsAre("Lunch", "Standup"));
  actor.advance(seconds(20));
  EXPECT_EQ(provider->state().events, KindAccess::readable);
  world->hanging = {};
  actor.advance(seconds(25));
  EXPECT_THAT(titles(), ElementsAre("Late", "Lunch", "Standup"));
}

TEST_F(AccountProviderTest, ACalendarThatHangsWhenItIsOpenedIsGivenUpAndTriedAgain) {
  world->add("slow", "Slow", event, "Late");
  world->add("w", "Work", reminder, "-Dishes");
  world->stuck = {"slow"};
  open();
  const auto openings = [&] {
    return std::count(world->opened.begin(), world->opened.end(), "slow");
  };
  EXPECT_THAT(tasks(), ElementsAre("Dishes"));
  actor.advance(milliseconds(19999));
  EXPECT_EQ(provider->state().events, KindAccess::nothing) << "it may still be opened";
  EXPECT_EQ(openings(), 1);
  actor.advance(milliseconds(1));
  EXPECT_EQ(provider->state(), (ProviderState{KindAccess::refused, KindAccess::readable}));
  actor.advance(milliseconds(999));
  EXPECT_EQ(openings(), 1) << "it is left in peace for a second";
  world->stuck = {};
  actor.advance(milliseconds(1));
  EXPECT_EQ(openings(), 2);
  actor.advance(milliseconds(100));
  EXPECT_THAT(titles(), ElementsAre("Late"));
  EXPECT_EQ(provider->state().events, KindAccess::readable);
}

TEST_F(AccountProviderTest, CalendarsThatAreReadOneByOneLeaveRoomBetweenTheirAnnouncements) {
  for (const char* uid : {"a", "b", "c", "d", "e", "f"}) world->add(uid, uid, event, uid);
  world->add("slow", "Slow", event, "Late");
  world->hanging = {"slow"};
  open();
  actor.advance(seconds(1));
  takeCounts();
  for (const char* uid : {"a", "b", "c", "d", "e", "f"}) {
    world->change(uid, std::string(uid) + "2");
    actor.advance(milliseconds(500));
  }
  EXPECT_EQ(changes, 2) << "in three seconds";
  actor.advance(seconds(2));
  EXPECT_EQ(changes, 3) << "and none is lost";
  EXPECT_THAT(titles(), ElementsAre("a2", "b2", "c2", "d2", "e2", "f2"));
}

TEST_F(AccountProviderTest, ACalendarThatFailsIsTriedAgainAndItsNeighboursAreShown) {
  world->add("bad", "Bad", event, "Back");
  world->add("w", "Work", event, "Standup");
  world->closed = {"bad"};
  open();
  EXPECT_EQ(readies, 1);
  EXPECT_THAT(titles(), ElementsAre("Standup"));
  actor.advance(seconds(1 + 2 + 4));
  EXPECT_EQ(std::count(world->opened.begin(), world->opened.end(), "bad"), 4);
  world->closed = {};
  actor.advance(seconds(8));
  EXPECT_THAT(titles(), ElementsAre("Back", "Standup"));
}

TEST_F(AccountProviderTest, AKindOfWhichNothingCanBeReadIsRefused) {
  world->add("w", "Work", event, "Standup");
  world->add("l", "List", reminder, "-Dishes");
  world->failing = {"l"};
  open();
  EXPECT_EQ(provider->state(), (ProviderState{KindAccess::readable, KindAccess::refused}));
}

TEST_F(AccountProviderTest, WhoWantsASignInIsLeftAloneAndTheNeighboursAreShown) {
  world->add("out", "Out", event, "");
  world->add("w", "Work", event, "Standup");
  world->signedOut = {"out"};
  open();
  EXPECT_EQ(readies, 1);
  EXPECT_THAT(titles(), ElementsAre("Standup"));
  EXPECT_EQ(provider->state().events, KindAccess::readable);
  world->remove("w");
  world->directorySigns->changed();
  actor.advance(seconds(1));
  EXPECT_EQ(provider->state().events, KindAccess::refused);
  world->signedOut = {};
  world->change("out", "Secret");
  actor.advance(seconds(1));
  EXPECT_EQ(provider->state().events, KindAccess::readable);
  EXPECT_THAT(titles(), ElementsAre("Secret"));
}

TEST_F(AccountProviderTest, WhatWasKeptFromBeforeASignOutIsShown) {
  world->add("out", "Out", event, "Kept");
  world->signedOut = {"out"};
  open();
  EXPECT_THAT(titles(), ElementsAre("Kept"));
  EXPECT_EQ(provider->state().events, KindAccess::readable);
}

TEST_F(AccountProviderTest, WhatWasReadStaysWhenASignOutLeavesNothing) {
  world->add("w", "Work", event, "Standup");
  open();
  world->signedOut = {"w"};
  world->change("w", "");
  actor.advance(seconds(1));
  EXPECT_THAT(titles(), ElementsAre("Standup"));
  EXPECT_EQ(provider->state().events, KindAccess::readable);
  world->change("w", "Kept");
  actor.advance(seconds(1));
  EXPECT_THAT(titles(), ElementsAre("Kept"));
  world->signedOut = {};
  world->change("w", "");
  actor.advance(seconds(1));
  EXPECT_THAT(titles(), IsEmpty()) << "now it is known that there is nothing";
  EXPECT_EQ(provider->state().events, KindAccess::readable);
}

TEST_F(AccountProviderTest, WhatCouldBeReadAndHeldNothingIsNotRefusedAfterASignOut) {
  world->add("w", "Work", event, "");
  open();
  EXPECT_EQ(provider->state().events, KindAccess::readable);
  actor.advance(seconds(30));
  world->signedOut = {"w"};
  world->change("w", "");
  actor.advance(seconds(1));
  EXPECT_EQ(provider->state().events, KindAccess::readable);
}

TEST_F(AccountProviderTest, WhatIsEmptyUntilASignInIsAskedForIsRefused) {
  world->add("w", "Work", event, "");
  open();
  EXPECT_EQ(provider->state().events, KindAccess::readable);
  actor.advance(seconds(20));
  world->signedOut = {"w"};
  world->change("w", "");
  actor.advance(seconds(1));
  EXPECT_EQ(provider->state().events, KindAccess::refused);
  // Connected for a moment, with a wrong password.
  world->signedOut = {};
  world->change("w", "");
  actor.advance(seconds(20));
  EXPECT_EQ(provider->state().events, KindAccess::readable);
  world->signedOut = {"w"};
  world->change("w", "");
  actor.advance(seconds(20));
  EXPECT_EQ(provider->state().events, KindAccess::refused);
  world->signedOut = {};
  world->change("w", "Standup");
  actor.advance(seconds(1));
  EXPECT_EQ(provider->state().events, KindAccess::readable);
  world->signedOut = {"w"};
  world->change("w", "");
  actor.advance(seconds(1));
  EXPECT_EQ(provider->state().events, KindAccess::readable);
}

TEST_F(AccountProviderTest, WhatACalendarHeldStaysWhenItDiesUntilItIsBack) {
  world->add("w", "Work", event, "Standup");
  open();
  world->texts["w"] = "Dinner";
  world->clientSigns.at("w").died();
  actor.advance(milliseconds(500));
  EXPECT_EQ(world->openClients, 0);
  EXPECT_THAT(titles(), ElementsAre("Standup"));
  EXPECT_EQ(provider->state().events, KindAccess::readable);
  EXPECT_EQ(changes, 0);
  actor.advance(milliseconds(600));
  EXPECT_THAT(titles(), ElementsAre("Dinner"));
  EXPECT_EQ(changes, 1);
}

TEST_F(AccountProviderTest, ACalendarThatDiesInTheMiddleOfAQuestionIsAskedAgain) {
  world->add("w", "Work", event, "Standup");
  open();
  world->hanging = {"w"};
  world->change("w", "Dinner");
  actor.advance(milliseconds(50));
  world->hanging = {};
  world->clientSigns.at("w").died();
  EXPECT_THAT(titles(), ElementsAre("Standup"));
  actor.advance(seconds(2));
  EXPECT_THAT(titles(), ElementsAre("Dinner"));
  EXPECT_EQ(world->openClients, 1);
}

TEST_F(AccountProviderTest, WhatWasReadStaysWhenTheServiceGoes) {
  world->add("w", "Work", event, "Standup");
  open();
  world->fails = true;
  world->directorySigns->died();
  actor.advance(minutes(1));
  EXPECT_EQ(world->directories, 0);
  EXPECT_EQ(world->openClients, 0);
  EXPECT_THAT(titles(), ElementsAre("Standup"));
  EXPECT_EQ(provider->state(), (ProviderState{KindAccess::readable, KindAccess::nothing}));
  EXPECT_EQ(changes, 0);
  world->fails = false;
  world->texts["w"] = "Dinner";
  actor.advance(minutes(5));
  EXPECT_THAT(titles(), ElementsAre("Dinner"));
  EXPECT_EQ(changes, 1);
}

TEST_F(AccountProviderTest, WhatWasReadStaysWhenTheNextAnswerIsOfNoUse) {
  world->add("w", "Work", event, "Standup");
  open();
  world->change("w", "bad");
  actor.advance(seconds(1));
  EXPECT_THAT(titles(), ElementsAre("Standup"));
  EXPECT_EQ(provider->state().events, KindAccess::readable);
}

TEST_F(AccountProviderTest, AnAnswerAfterTheLimitIsNobodysAnyMore) {
  world->add("w", "Work", event, "Standup");
  world->hanging = {"w"};
  open();
  actor.advance(seconds(20));
  EXPECT_EQ(world->openClients, 0) << "a client that hangs is dropped";
  EXPECT_EQ(provider->state().events, KindAccess::refused);
  world->hanging = {};
  actor.advance(seconds(1));
  EXPECT_EQ(world->openClients, 1);
  EXPECT_THAT(titles(), ElementsAre("Standup"));
}

TEST_F(AccountProviderTest, ACalendarThatIsRemovedWhileItIsReadLeavesNothing) {
  world->add("w", "Work", event, "Standup");
  world->hanging = {"w"};
  open();
  world->remove("w");
  world->directorySigns->changed();
  actor.advance(minutes(1));
  EXPECT_THAT(calendarTitles(), IsEmpty());
  EXPECT_EQ(world->openClients, 0);
  EXPECT_EQ(provider->state(), ProviderState{});
}

TEST_F(AccountProviderTest, TheServiceMayComeLater) {
  world->add("w", "Work", event, "Standup");
  open(false);
  world->found(accounts->service());
  actor.advance(milliseconds(100));
  EXPECT_EQ(readies, 1);
  EXPECT_EQ(changes, 1);
  EXPECT_FALSE(provider->state().isAbsent);
  EXPECT_THAT(titles(), ElementsAre("Standup"));
}

TEST_F(AccountProviderTest, AServiceThatComesBackAfterALongTimeIsAskedAtOnce) {
  world->add("w", "Work", event, "Standup");
  world->add("h", "Home", event, "Nap");
  open();
  world->closed = {"w"};
  world->clientSigns.at("w").died();
  actor.advance(minutes(60));
  world->closed = {};
  world->texts["w"] = "Dinner";
  const auto openings = world->opened.size();
  world->found(accounts->service());
  actor.advance(milliseconds(100));
  EXPECT_THAT(titles(), ElementsAre("Dinner", "Nap"));
  EXPECT_EQ(world->opened.size(), openings + 1) << "the other one is not disturbed";
  EXPECT_EQ(world->directories, 1);
  EXPECT_EQ(world->openClients, 2);

  world->fails = true;
  world->directorySigns->died();
  actor.advance(minutes(60));
  world->fails = false;
  world->texts["w"] = "Supper";
  world->found(accounts->service());
  actor.advance(milliseconds(100));
  EXPECT_THAT(titles(), ElementsAre("Nap", "Supper"));
  EXPECT_EQ(world->directories, 1);
}

TEST_F(AccountProviderTest, AServiceThatComesBackAndFailsAgainIsNotAskedMoreOftenForThat) {
  world->add("w", "Work", event, "Standup");
  open();
  world->closed = {"w"};
  world->clientSigns.at("w").died();
  actor.advance(minutes(60));
  const auto openings = world->opened.size();
  world->found(accounts->service());
  actor.advance(minutes(4));
  EXPECT_EQ(world->opened.size(), openings + 1);
  world->fails = true;
  world->directorySigns->died();
  actor.advance(minutes(60));
  world->found(accounts->service());
  actor.runUntilIdle();
  EXPECT_GT(actor.nextTimerIn(), minutes(4));
}

TEST_F(AccountProviderTest, AReaderThatCannotBeStartedIsTold) {
  world->add("w", "Work", event, "Standup");
  isReaderBroken = true;
  open();
  EXPECT_EQ(provider->state().failure.value_or(""),
            "Calendars cannot be read because the program that reads them does not start.");
}

}  // namespace
}  // namespace orvane::host
