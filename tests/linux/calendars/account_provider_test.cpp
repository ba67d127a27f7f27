#include "linux/calendars/account_provider.h"

#include <gmock/gmock.h>

#include "account_fixture.h"

namespace orvane::host {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

TEST_F(AccountProviderTest, ADesktopWithoutTheServiceIsReadyAtOnceAndCountsForNothing) {
  open(false);
  EXPECT_EQ(readies, 1);
  EXPECT_TRUE(provider->state().isAbsent);
  EXPECT_FALSE(provider->state().failure.has_value());
  EXPECT_THAT(titles(), IsEmpty());
  actor.advance(minutes(10));
  EXPECT_EQ(readies, 1);
  EXPECT_EQ(changes, 0);
  EXPECT_EQ(actor.pendingTimers(), 0U) << "nothing is to wake up for";
}

TEST_F(AccountProviderTest, ShowsWhatTheAccountsHold) {
  world->add("w", "Work", event, "Review@2 Standup");
  world->add("c", "Chores", reminder, "-Dishes");
  open();
  EXPECT_EQ(readies, 1);
  EXPECT_EQ(changes, 0) << "whoever waits for the first answers needs no announcement";
  EXPECT_THAT(calendarTitles(event), ElementsAre("Work"));
  EXPECT_THAT(calendarTitles(reminder), ElementsAre("Chores"));
  EXPECT_THAT(titles(), ElementsAre("Standup", "Review"));
  EXPECT_THAT(tasks(), ElementsAre("Dishes"));
  EXPECT_EQ(provider->state(), (ProviderState{KindAccess::readable, KindAccess::readable}));
  EXPECT_EQ(events()[0].calendar->title, "Work");
}

TEST_F(AccountProviderTest, OneItemInTwoCalendarsHasTwoIdentifiersThatOutliveTheRun) {
  world->add("one", "One", event, "Talk");
  world->add("two", "Two", event, "Talk");
  open();
  const auto first = events();
  ASSERT_THAT(first, SizeIs(2));
  EXPECT_NE(first[0].eventIdentifier, first[1].eventIdentifier);
  EXPECT_THAT(*first[0].eventIdentifier, StartsWith(first[0].calendar->calendarIdentifier + ":"));
  EXPECT_THAT(first[0].calendar->calendarIdentifier, StartsWith("account-"))
      << "unlike those of folders";
  provider->stop();
  open();
  EXPECT_EQ(events()[0].eventIdentifier, first[0].eventIdentifier);
}

TEST_F(AccountProviderTest, AnEmptyCalendarIsNoRefusal) {
  world->add("w", "Work", event, "");
  open();
  EXPECT_EQ(provider->state(), (ProviderState{KindAccess::readable, KindAccess::nothing}));
}

TEST_F(AccountProviderTest, ATitleIsFitToBeShown) {
  world->add("w", "  Work\n\x01", event, "");
  world->add("n", "\n", event, "");
  world->add("l", "", reminder, "");
  open();
  EXPECT_THAT(calendarTitles(event), ElementsAre("Work", "Calendar"));
  EXPECT_THAT(calendarTitles(reminder), ElementsAre("Reminders"));
}

TEST_F(AccountProviderTest, ABurstIsOneAnnouncementWithinATenthOfASecondOfItsLast) {
  world->add("w", "Work", event, "Standup");
  world->add("h", "Home", event, "Nap");
  open();
  for (int i = 0; i < 20; ++i) {
    world->change("w", "Standup" + std::to_string(i));
    world->change("h", "Nap" + std::to_string(i));
    actor.advance(milliseconds(10));
  }
  EXPECT_EQ(changes, 0);
  actor.advance(milliseconds(90));
  EXPECT_EQ(changes, 1);
  EXPECT_THAT(titles(), ElementsAre("Nap19", "Standup19"));
  actor.advance(minutes(1));
  EXPECT_EQ(changes, 1);
}

TEST_F(AccountProviderTest, ABurstThatChangesNothingIsNotAnnounced) {
  world->add("w", "Work", event, "Standup");
  open();
  world->change("w", "Standup");
  actor.advance(seconds(1));
  EXPECT_EQ(changes, 0);
}

TEST_F(AccountProviderTest, ASlowAnswerIsNotWaitedForByTheAnnouncement) {
  world->add("w", "Work", event, "Standup");
  open();
  world->slow["w"] = milliseconds(500);
  world->change("w", "Lunch");
  actor.advance(milliseconds(100));
  EXPECT_EQ(changes, 1) << "of the sign alone";
  actor.advance(seconds(1));
  EXPECT_EQ(changes, 1) << "nobody has asked yet";
  EXPECT_THAT(titles(), ElementsAre("Lunch"));
}

TEST_F(AccountProviderTest, ASlowAnswerIsAnnouncedToThoseWhoWereToldSomethingElseMeanwhile) {
  world->add("w", "Work", event, "Standup");
  open();
  world->slow["w"] = milliseconds(500);
  world->change("w", "Lunch");
  actor.advance(milliseconds(200));
  EXPECT_THAT(titles(), ElementsAre("Standup"));
  actor.advance(seconds(1));
  EXPECT_EQ(changes, 2);
  EXPECT_THAT(titles(), ElementsAre("Lunch"));
}

TEST_F(AccountProviderTest, CalendarsComeGoAndAreRenamedWhileItRuns) {
  world->add("w", "Work", event, "Standup");
  open();
  world->add("h", "Home", event, "Nap");
  world->directorySigns->changed();
  actor.advance(milliseconds(100));
  EXPECT_EQ(changes, 1);
  EXPECT_THAT(calendarTitles(), ElementsAre("Work", "Home"));
  EXPECT_THAT(titles(), ElementsAre("Nap", "Standup"));

  takeCounts();
  world->calendars[0].title = "Office";
  world->directorySigns->changed();
  world->directorySigns->changed();
  actor.advance(milliseconds(100));
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(reads, 0) << "a name is nothing to read again for";
  EXPECT_THAT(calendarTitles(), ElementsAre("Office", "Home"));

  takeCounts();
  world->remove("w");
  world->directorySigns->changed();
  actor.advance(milliseconds(100));
  EXPECT_EQ(changes, 1);
  EXPECT_THAT(titles(), ElementsAre("Nap"));
  EXPECT_EQ(world->openClients, 1);
}

TEST_F(AccountProviderTest, AQueryBeyondWhatWasReadIsAnsweredAtOnceAndReadOn) {
  world->add("w", "Work", event, "Standup Far@300");
  open();
  EXPECT_THAT(titles(5 * day, 12 * day + hour), IsEmpty());
  actor.advance(milliseconds(100));
  EXPECT_EQ(changes, 1);
  EXPECT_THAT(titles(5 * day, 13 * day), ElementsAre("Far"));
  EXPECT_GE(world->spans.back().end, now + 12 * day);
  takeCounts();
  titles(6 * day, 13 * day);
  actor.advance(milliseconds(100));
  EXPECT_EQ(reads, 0) << "the margin is there for the next days";
}

TEST_F(AccountProviderTest, AnotherTimeZoneIsReadAnew) {
  world->add("w", "Work", event, "zone");
  open();
  EXPECT_THAT(titles(), ElementsAre("Europe/Berlin"));
  zone = "Asia/Tokyo";
  titles();
  actor.advance(milliseconds(100));
  EXPECT_EQ(changes, 1);
  EXPECT_THAT(titles(), ElementsAre("Asia/Tokyo"));
}

TEST_F(AccountProviderTest, WhatWasCutDownToTheShownDaysIsReadAgainForOthers) {
  world->add("w", "Work", event, "dense");
  open();
  titles(day, 2 * day);
  actor.advance(milliseconds(100));
  EXPECT_THAT(titles(day, 2 * day), ElementsAre("dense"));
}

TEST_F(AccountProviderTest, NothingIsCalledAfterTheStop) {
  world->add("w", "Work", event, "Standup");
  world->add("slow", "Slow", event, "Late");
  world->hanging = {"slow"};
  open();
  world->change("w", "Lunch");
  provider->stop();
  takeCounts();
  actor.advance(minutes(10));
  EXPECT_EQ(readies + changes, 0);
  EXPECT_EQ(world->openClients + world->directories, 0);
  EXPECT_TRUE(world->isStopped);
  EXPECT_EQ(actor.pendingTimers(), 0U);
}

}  // namespace
}  // namespace orvane::host
