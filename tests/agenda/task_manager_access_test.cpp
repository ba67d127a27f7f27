// Access to the store, and what a refresh asks of it.
#include "agenda/task_manager_fixture.h"

namespace orvane {
namespace {

using State = EventKitAuthorizationState;
using Status = EKAuthorizationStatus;

class StoreAccess : public TaskManagerTest {
 protected:
  void SetUp() override {
    store_->eventCalendars = {{{"work", "Work"}}};
    store_->reminderLists = {{{"home", "Home"}}};
    addEvent("a", at(20, 15));
    addReminder("r");
  }
  void setStatus(Status events, Status reminders) {
    store_->eventAccess.status = events;
    store_->reminderAccess.status = reminders;
  }
  void requestAndRefresh() {
    spawn(actor_, manager().requestAccessAndRefresh());
    actor_.runUntilIdle();
  }
  State events() { return *manager().calendarAuthorizationState; }
  State reminders() { return *manager().reminderAuthorizationState; }
};

TEST_F(StoreAccess, FullAccessIsNotAskedForAgain) {
  requestAndRefresh();
  EXPECT_EQ(store_->countOf("request events"), 0);
  EXPECT_EQ(store_->countOf("request reminders"), 0);
  EXPECT_EQ(events(), State::authorized());
  EXPECT_EQ(reminders(), State::authorized());
  EXPECT_EQ(eventIds() + reminderIds(), "a r ");
}

TEST_F(StoreAccess, OnlyWhatWasNeverDecidedIsAskedForEventsFirst) {
  setStatus(Status::notDetermined, Status::notDetermined);
  requestAndRefresh();
  EXPECT_EQ(store_->calls[0], "request events");
  EXPECT_EQ(store_->calls[1], "request reminders");
  EXPECT_EQ(eventIds() + reminderIds(), "a r ");
}

TEST_F(StoreAccess, AnyOtherStatusIsARefusalWithoutAPrompt) {
  for (const auto status : {Status::restricted, Status::denied, Status::writeOnly}) {
    setStatus(status, Status::fullAccess);
    requestAndRefresh();
    EXPECT_EQ(store_->countOf("request events"), 0);
    EXPECT_EQ(events(), State::denied("Calendar access was not granted."));
    EXPECT_EQ(eventIds(), "");
    EXPECT_EQ(reminderIds(), "r ");
  }
}

TEST_F(StoreAccess, ARefusalOfBothClearsTheBoard) {
  requestAndRefresh();
  const auto loaded = *manager().lastRefreshDate;
  actor_.advance(1min);
  setStatus(Status::notDetermined, Status::notDetermined);
  store_->eventAccess.grants = store_->reminderAccess.grants = false;
  requestAndRefresh();
  EXPECT_EQ(events(), State::denied("Calendar access was not granted."));
  EXPECT_EQ(reminders(), State::denied("Reminders access was not granted."));
  EXPECT_TRUE(manager().events->empty());
  EXPECT_TRUE(manager().reminders->empty());
  EXPECT_EQ(*manager().nextDeadline, std::nullopt);
  EXPECT_FALSE(*manager().isRefreshing);
  EXPECT_EQ(*manager().lastRefreshDate, loaded);
  // The options keep their last value.
  EXPECT_EQ(manager().calendarOptions->size(), 1u);
  EXPECT_EQ(manager().reminderListOptions->size(), 1u);
}

TEST_F(StoreAccess, AFailureOfTheFirstRequestIsTheLastWord) {
  setStatus(Status::notDetermined, Status::notDetermined);
  store_->eventAccess.error = EKError{"No calendar can be reached."};
  requestAndRefresh();
  EXPECT_EQ(events(), State::denied("No calendar can be reached."));
  EXPECT_EQ(reminders(), State::denied("No calendar can be reached."));
  EXPECT_EQ(store_->countOf("request reminders"), 0);
  EXPECT_EQ(store_->countOf("events"), 0);
  EXPECT_FALSE(*manager().isRefreshing);
  EXPECT_EQ(*manager().lastRefreshDate, std::nullopt);
}

TEST_F(StoreAccess, AFailureOfTheSecondRequestCountsForBoth) {
  setStatus(Status::notDetermined, Status::notDetermined);
  store_->reminderAccess.error = EKError{"No list can be reached."};
  requestAndRefresh();
  EXPECT_EQ(events(), State::denied("No list can be reached."));
  EXPECT_EQ(reminders(), State::denied("No list can be reached."));
  EXPECT_TRUE(manager().events->empty());
  EXPECT_FALSE(*manager().isRefreshing);
}

TEST_F(StoreAccess, AnErrorOutweighsAGrant) {
  setStatus(Status::notDetermined, Status::fullAccess);
  store_->eventAccess.grants = true;
  store_->eventAccess.error = EKError{"Half an answer."};
  requestAndRefresh();
  EXPECT_EQ(events(), State::denied("Half an answer."));
}

TEST_F(StoreAccess, RefreshingIsOnFromBeforeThePromptsToTheEnd) {
  setStatus(Status::notDetermined, Status::notDetermined);
  store_->holdsCompletions = true;
  std::string seen;
  const auto watching =
      manager().isRefreshing.subscribe([&](bool on) { seen += on ? "on " : "off "; });
  requestAndRefresh();
  EXPECT_EQ(seen, "off on ");
  EXPECT_EQ(events(), State::unknown());
  store_->deliver();
  actor_.runUntilIdle();
  EXPECT_EQ(events(), State::unknown());
  store_->holdsCompletions = false;
  store_->deliver();
  actor_.runUntilIdle();
  EXPECT_EQ(events(), State::authorized());
  // The nested refresh sets and clears it too.
  EXPECT_EQ(seen, "off on on off off ");
}

TEST_F(StoreAccess, WriteOnlyAccessIsDeniedOnRefreshAndNeverPrompted) {
  setStatus(Status::writeOnly, Status::fullAccess);
  refresh();
  EXPECT_EQ(events(), State::denied("Calendar access is required to show events."));
  EXPECT_EQ(reminders(), State::authorized());
  EXPECT_EQ(store_->countOf("request events"), 0);
}

TEST_F(StoreAccess, ARefreshNeverPromptsAndSaysWhatIsRequired) {
  setStatus(Status::notDetermined, Status::notDetermined);
  refresh();
  EXPECT_EQ(events(), State::denied("Calendar access is required to show events."));
  EXPECT_EQ(reminders(), State::denied("Reminders access is required to show reminders."));
  EXPECT_TRUE(store_->calls.empty());
}

TEST_F(StoreAccess, ALaterRefreshReplacesTheTextOfTheRefusal) {
  setStatus(Status::denied, Status::denied);
  requestAndRefresh();
  EXPECT_EQ(events(), State::denied("Calendar access was not granted."));
  refresh();
  EXPECT_EQ(events(), State::denied("Calendar access is required to show events."));
}

TEST_F(StoreAccess, ARefreshWithoutAnyAccessLeavesTheFlagAndTheDate) {
  requestAndRefresh();
  const auto loaded = *manager().lastRefreshDate;
  setStatus(Status::denied, Status::denied);
  manager().isRefreshing = true;
  actor_.advance(1min);
  refresh();
  EXPECT_TRUE(*manager().isRefreshing);
  EXPECT_EQ(*manager().lastRefreshDate, loaded);
  EXPECT_TRUE(manager().events->empty());
  EXPECT_TRUE(manager().reminders->empty());
  EXPECT_EQ(*manager().nextDeadline, std::nullopt);
}

TEST_F(StoreAccess, TheEventQueryAsksForAWeekOfEveryCalendarWhateverIsSelected) {
  store_->eventCalendars = {{{"work", "Work"}, {"play", "Play"}}};
  settings_->selectedCalendarIDs = TextSet{"play"};
  refresh();
  const auto& predicate = store_->eventPredicates.at(0);
  EXPECT_EQ(predicate.start, at(20, 0));
  EXPECT_EQ(predicate.end, at(27, 0));
  EXPECT_EQ(predicate.calendarIdentifiers, (std::vector<std::string>{"work", "play"}));
}

TEST_F(StoreAccess, WithNoCalendarsTheEventQueryIsMadeWithAnEmptyList) {
  for (const bool missing : {false, true}) {
    store_->eventCalendars = std::vector<EKCalendar>();
    if (missing) store_->eventCalendars.reset();
    store_->eventPredicates.clear();
    refresh();
    EXPECT_EQ(store_->eventPredicates.at(0).calendarIdentifiers, std::vector<std::string>());
    EXPECT_EQ(eventIds(), "");
  }
}

TEST_F(StoreAccess, WithNoListsTheReminderQueryAsksAllLists) {
  for (const bool missing : {false, true}) {
    store_->reminderLists = std::vector<EKCalendar>();
    if (missing) store_->reminderLists.reset();
    store_->reminderPredicates.clear();
    refresh();
    EXPECT_EQ(store_->reminderPredicates.at(0).calendarIdentifiers, std::nullopt);
    EXPECT_EQ(reminderIds(), "r ");
  }
}

TEST_F(StoreAccess, TheReminderQueryHasNoDatesAndNamesEveryList) {
  store_->reminderLists = {{{"home", "Home"}, {"errands", "Errands"}}};
  settings_->selectedReminderListIDs = TextSet{"errands"};
  refresh();
  const auto& predicate = store_->reminderPredicates.at(0);
  EXPECT_EQ(predicate.dueDateStarting, std::nullopt);
  EXPECT_EQ(predicate.dueDateEnding, std::nullopt);
  EXPECT_EQ(predicate.calendarIdentifiers, (std::vector<std::string>{"home", "errands"}));
}

TEST_F(StoreAccess, AMissingListOfRemindersCountsAsEmpty) {
  store_->remindersMissing = true;
  refresh();
  EXPECT_EQ(reminderIds(), "");
  EXPECT_EQ(eventIds(), "a ");
  EXPECT_TRUE(manager().lastRefreshDate.get().has_value());
}

TEST_F(StoreAccess, CompletedRemindersThatSlipThroughAreDropped) {
  store_->returnsCompleted = true;
  addReminder("done");
  store_->storedReminders.back().isCompleted = true;
  refresh();
  EXPECT_EQ(reminderIds(), "r ");
}

TEST_F(StoreAccess, WithoutAnEndOfTheWindowThereAreNoEventsAndTheOptionsStay) {
  refresh();
  calendar_.setCannotAddDays(true);
  store_->eventCalendars = {{{"work", "Work"}, {"new", "New"}}};
  store_->calls.clear();
  refresh();
  EXPECT_EQ(eventIds(), "");
  EXPECT_EQ(reminderIds(), "r ");
  EXPECT_EQ(manager().calendarOptions->size(), 1u);
  EXPECT_EQ(store_->countOf("events"), 0);
}

TEST_F(StoreAccess, ListsOfAnItemWithoutACalendarAreNamedAfterTheirKind) {
  store_->storedEvents[0].calendar.reset();
  store_->storedReminders[0].calendar.reset();
  store_->storedEvents[0].title = "   ";
  refresh();
  EXPECT_EQ(manager().events->at(0).title, "Untitled Event");
  EXPECT_EQ(manager().events->at(0).calendarTitle, "Calendar");
  EXPECT_EQ(manager().reminders->at(0).calendarTitle, "Reminders");
}

}  // namespace
}  // namespace orvane
