#include "linux/calendars/account_provider.h"

#include <gmock/gmock.h>

#include <sstream>

#include "fakes/manual_main_actor.h"
#include "memory_accounts.h"

namespace orvane::host {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

constexpr double hour = 3600;
constexpr double day = 86400;
constexpr double now = 1'795'000'000;
constexpr auto event = EKEntityType::event;
constexpr auto reminder = EKEntityType::reminder;

// Understands "name" as an event of the present, "name@hours" as one of later, "-name" as a task,
// "zone" as an event titled with the zone, "dense" as one of the shown part of the window only, and
// no text at all where it is "bad".
std::optional<TextContent> contentOfPlain(const std::string& text, const ReadWindow& window,
                                          const ShownSpan& shown) {
  wire::FileAnswer answer;
  if (text == "bad") answer.outcome = wire::ReadOutcome::notCalendar;
  std::stringstream words(text);
  for (std::string word; words >> word;) {
    answer.holdsEvents = answer.holdsEvents || word.front() != '-';
    answer.holdsTasks = answer.holdsTasks || word.front() == '-';
    const auto at = word.find('@');
    const double later = at == std::string::npos ? 0 : std::stod(word.substr(at + 1));
    const auto name = word.substr(0, at);
    if (word.front() == '-') {
      answer.tasks.push_back({name.substr(1), name.substr(1), std::nullopt, 0});
    } else if (word == "zone") {
      answer.events.push_back({name, "", window.localTimeZone, now, now + hour, false});
    } else if (word == "dense") {
      answer.isForShownOnly = true;
      answer.events.push_back({name, "", name, shown.start, shown.start + hour, false});
    } else if (now + later * hour < window.end) {
      answer.events.push_back(
          {name, "", name, now + later * hour, now + (later + 1) * hour, false});
    }
  }
  return contentOf(answer);
}

class AccountProviderTest : public testing::Test {
 protected:
  AccountProviderTest() {
    options.localTimeZone = [this] { return zone; };
    options.readText = [this](const std::string& text, const ReadWindow& window,
                              const ShownSpan& shown, const TextReading::Done& done) {
      ++reads;
      actor.post([this, text, window, shown, done] {
        const auto content = isReaderBroken ? std::nullopt : contentOfPlain(text, window, shown);
        done(content ? &*content : nullptr,
             isReaderBroken ? TextFailure::program : TextFailure::text);
      });
    };
  }
  ~AccountProviderTest() override {
    if (provider) provider->stop();
  }

  // Made, started, and told that there is such a service, or that there is none.
  void open(bool isThere = true) {
    auto made = std::make_unique<MemoryAccounts>(world);
    accounts = made.get();
    provider = makeAccountProvider(options, std::move(made), actor);
    provider->start([this] { ++readies; }, [this] { ++changes; });
    actor.runUntilIdle();
    ASSERT_TRUE(world->found);
    world->found(isThere ? accounts->service() : nullptr);
    actor.runUntilIdle();
  }

  std::vector<std::string> titles(double from = 0, double to = 7 * day) {
    std::vector<std::string> titles;
    for (const auto& item : events(from, to)) titles.push_back(item.title.value_or("(none)"));
    return titles;
  }
  std::vector<EKEvent> events(double from = 0, double to = 7 * day) {
    return provider->events(Date{now + from}, Date{now + to}, std::nullopt);
  }
  std::vector<std::string> tasks() {
    std::vector<std::string> titles;
    for (const auto& item : provider->openReminders(std::nullopt)) titles.push_back(*item.title);
    return titles;
  }
  std::vector<std::string> calendarTitles(EKEntityType type = event) {
    std::vector<std::string> titles;
    for (const auto& calendar : provider->calendars(type)) titles.push_back(calendar.title);
    return titles;
  }
  void takeCounts() { changes = reads = 0; }

  fakes::ManualMainActor actor{Date{now}};
  std::shared_ptr<AccountWorld> world = std::make_shared<AccountWorld>(actor);
  MemoryAccounts* accounts = nullptr;
  AccountOptions options;
  std::string zone = "Europe/Berlin";
  bool isReaderBroken = false;
  std::unique_ptr<CalendarProvider> provider;
  int readies = 0;
  int changes = 0;
  int reads = 0;
};

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

TEST_F(AccountProviderTest, AReaderThatCannotBeStartedIsTold) {
  world->add("w", "Work", event, "Standup");
  isReaderBroken = true;
  open();
  EXPECT_EQ(provider->state().failure.value_or(""),
            "Calendars cannot be read because the program that reads them does not start.");
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
