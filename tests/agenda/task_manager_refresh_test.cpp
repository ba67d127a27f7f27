// The refresh cycle, in virtual time.
#include "agenda/task_manager_fixture.h"

namespace orvane {
namespace {

class RefreshCycle : public TaskManagerTest {};

TEST_F(RefreshCycle, ANewManagerIsEmptyAndAsksForNothing) {
  const auto& fresh = manager();
  actor_.advance(10s);
  EXPECT_TRUE(fresh.events->empty());
  EXPECT_TRUE(fresh.reminders->empty());
  EXPECT_TRUE(fresh.calendarOptions->empty());
  EXPECT_TRUE(fresh.reminderListOptions->empty());
  EXPECT_EQ(*fresh.nextDeadline, std::nullopt);
  EXPECT_EQ(*fresh.calendarAuthorizationState, EventKitAuthorizationState::unknown());
  EXPECT_EQ(*fresh.reminderAuthorizationState, EventKitAuthorizationState::unknown());
  EXPECT_FALSE(*fresh.isRefreshing);
  EXPECT_EQ(*fresh.lastRefreshDate, std::nullopt);
  EXPECT_TRUE(store_->calls.empty());
}

TEST_F(RefreshCycle, StartAsksThenLoadsAndPublishes) {
  store_->eventAccess.status = EKAuthorizationStatus::notDetermined;
  store_->reminderAccess.status = EKAuthorizationStatus::notDetermined;
  store_->eventCalendars = {{{"work", "Work"}}};
  store_->reminderLists = {{{"home", "Home"}}};
  addEvent("a", at(20, 15));
  addReminder("r");
  manager().start();
  EXPECT_TRUE(store_->calls.empty());
  actor_.runUntilIdle();
  EXPECT_EQ(eventIds(), "a ");
  EXPECT_EQ(reminderIds(), "r ");
  EXPECT_EQ(manager().nextDeadline.get()->id, "event-a");
  EXPECT_EQ(*manager().calendarOptions,
            (std::vector<EventKitSourceOption>{{"work", "Work", EKEntityType::event}}));
  EXPECT_EQ(*manager().reminderListOptions,
            (std::vector<EventKitSourceOption>{{"home", "Home", EKEntityType::reminder}}));
  EXPECT_FALSE(*manager().isRefreshing);
  EXPECT_EQ(*manager().lastRefreshDate, at(20, 12));
  EXPECT_EQ(store_->countOf("request events"), 1);
  EXPECT_EQ(store_->countOf("request reminders"), 1);
}

TEST_F(RefreshCycle, TenCallsInABurstYieldOneRefreshAfterTheTenth) {
  manager();
  for (int call = 0; call < 10; ++call) {
    if (call > 0) actor_.advance(100ms);
    manager().scheduleRefresh();
  }
  actor_.advance(249ms);
  EXPECT_EQ(refreshes(), 0);
  actor_.advance(1ms);
  EXPECT_EQ(refreshes(), 1);
  actor_.advance(1h);
  EXPECT_EQ(refreshes(), 1);
}

TEST_F(RefreshCycle, AStoreChangeRefreshesAfterOneAndAQuarterSeconds) {
  manager();
  center_.post(EKEventStoreChanged);
  actor_.advance(1249ms);
  EXPECT_EQ(refreshes(), 0);
  actor_.advance(1ms);
  EXPECT_EQ(refreshes(), 1);
}

TEST_F(RefreshCycle, ABurstOfStoreChangesRefreshesOnceAfterTheLast) {
  manager();
  for (int change = 0; change < 5; ++change) {
    center_.post(EKEventStoreChanged);
    actor_.advance(900ms);
  }
  EXPECT_EQ(refreshes(), 0);
  actor_.advance(350ms);
  EXPECT_EQ(refreshes(), 1);
  actor_.advance(1min);
  EXPECT_EQ(refreshes(), 1);
}

TEST_F(RefreshCycle, AnySettingRefreshesAfterHalfASecond) {
  manager();
  settings_->glassOpacity = 0.3;
  actor_.advance(499ms);
  EXPECT_EQ(refreshes(), 0);
  actor_.advance(1ms);
  EXPECT_EQ(refreshes(), 1);
}

TEST_F(RefreshCycle, ADraggedSettingRefreshesOnce) {
  manager();
  for (int step = 0; step < 50; ++step) {
    settings_->glassOpacity = step / 50.0;
    actor_.advance(16ms);
  }
  actor_.advance(1min);
  EXPECT_EQ(refreshes(), 1);
}

TEST_F(RefreshCycle, ASelectionIsAppliedByTheRefreshThatItCauses) {
  addEvent("a", at(20, 15), "work");
  addEvent("b", at(20, 16), "play");
  store_->eventCalendars = {{{"work", "Work"}, {"play", "Play"}}};
  refresh();
  EXPECT_EQ(eventIds(), "a b ");
  settings_->toggleCalendar("play");
  EXPECT_EQ(eventIds(), "a b ");
  actor_.advance(500ms);
  EXPECT_EQ(eventIds(), "b ");
  EXPECT_EQ(manager().nextDeadline.get()->id, "event-b");
}

TEST_F(RefreshCycle, AnEmptySelectionShowsAllAndAForeignOneNothing) {
  addEvent("a", at(20, 15), "work");
  addEvent("b", at(20, 16), "play");
  addReminder("r", "home");
  store_->eventCalendars = {{{"work", "Work"}, {"play", "Play"}}};
  store_->reminderLists = {{{"home", "Home"}}};
  refresh();
  EXPECT_EQ(eventIds(), "a b ");
  EXPECT_EQ(reminderIds(), "r ");
  settings_->selectedCalendarIDs = TextSet{"elsewhere"};
  settings_->selectedReminderListIDs = TextSet{"elsewhere"};
  refresh();
  EXPECT_EQ(eventIds(), "");
  EXPECT_EQ(reminderIds(), "");
  EXPECT_EQ(manager().calendarOptions->size(), 2u);
}

TEST_F(RefreshCycle, WithAccessToEventsAloneRemindersArePublishedEmpty) {
  addEvent("a", at(20, 15));
  addReminder("r");
  store_->eventCalendars = {{{"work", "Work"}}};
  refresh();
  EXPECT_EQ(reminderIds(), "r ");
  store_->reminderAccess.status = EKAuthorizationStatus::denied;
  store_->calls.clear();
  refresh();
  EXPECT_EQ(reminderIds(), "");
  EXPECT_EQ(manager().nextDeadline.get()->id, "event-a");
  EXPECT_EQ(store_->countOf("calendars reminders"), 0);
  EXPECT_EQ(store_->countOf("fetch reminders"), 0);
}

TEST_F(RefreshCycle, PublishesInOrderWhileRefreshing) {
  addEvent("a", at(20, 15));
  store_->eventCalendars = {{{"work", "Work"}}};
  std::string seen;
  const auto log = [&seen](const char* what) { return [&seen, what](auto&&) { seen += what; }; };
  auto& m = manager();
  const Subscription watching[] = {
      m.events.subscribe(log("events ")),
      m.reminders.subscribe(log("reminders ")),
      m.calendarOptions.subscribe(log("calendars ")),
      m.reminderListOptions.subscribe(log("lists ")),
      m.nextDeadline.subscribe(log("deadline ")),
      m.isRefreshing.subscribe([&seen](bool on) { seen += on ? "on " : "off "; }),
      m.lastRefreshDate.subscribe(log("date ")),
  };
  seen.clear();
  refresh();
  EXPECT_EQ(seen, "on calendars lists events reminders deadline off date ");
}

TEST_F(RefreshCycle, EveryPublishedChangeIsAnnouncedBeforehand) {
  int announced = 0;
  const auto watching = manager().objectWillChange().subscribe([&] { ++announced; });
  refresh();
  // Two states, refreshing twice, two option lists, two lists, the deadline and the date.
  EXPECT_EQ(announced, 10);
}

TEST_F(RefreshCycle, LastRefreshDateIsReadAfterTheFetches) {
  store_->holdsCompletions = true;
  refresh();
  EXPECT_TRUE(*manager().isRefreshing);
  actor_.advance(3s);
  store_->deliver();
  actor_.runUntilIdle();
  EXPECT_EQ(*manager().lastRefreshDate, at(20, 12, 0, 3));
  EXPECT_FALSE(*manager().isRefreshing);
}

TEST_F(RefreshCycle, BothFetchesAreUnderWayAtOnce) {
  actor_.holdWorkers();
  spawn(actor_, manager().refreshData());
  actor_.runUntilIdle();
  EXPECT_EQ(actor_.pendingWorkers(), 2u);
}

TEST_F(RefreshCycle, TheMainThreadIsFreeWhileWorkersQuery) {
  actor_.holdWorkers();
  spawn(actor_, manager().refreshData());
  bool ticked = false;
  const auto tick = actor_.after(1s, [&] { ticked = true; });
  actor_.advance(1s);
  EXPECT_TRUE(ticked);
  EXPECT_TRUE(*manager().isRefreshing);
  EXPECT_TRUE(store_->calls.empty());
}

TEST_F(RefreshCycle, AScheduledRefreshReplacesAPendingOneButNotARunningOne) {
  addEvent("a", at(20, 15));
  store_->eventCalendars = {{{"work", "Work"}}};
  store_->holdsCompletions = true;
  manager().scheduleRefresh();
  actor_.advance(250ms);
  EXPECT_TRUE(*manager().isRefreshing);
  manager().scheduleRefresh();
  actor_.runUntilIdle();
  store_->deliver();
  actor_.runUntilIdle();
  // The first was cancelled after its sleep, and published all the same.
  EXPECT_EQ(eventIds(), "a ");
  EXPECT_FALSE(*manager().isRefreshing);
  EXPECT_EQ(refreshes(), 1);
  actor_.advance(250ms);
  EXPECT_EQ(refreshes(), 2);
}

TEST_F(RefreshCycle, OfTwoOverlappingRefreshesTheLaterFinishingOneWins) {
  addEvent("a", at(20, 15));
  store_->eventCalendars = {{{"work", "Work"}}};
  store_->holdsCompletions = true;
  refresh();
  // The first has fetched its events by now and waits for its reminders.
  store_->storedEvents.clear();
  addEvent("b", at(20, 16));
  store_->holdsCompletions = false;
  refresh();
  EXPECT_EQ(eventIds(), "b ");
  EXPECT_FALSE(*manager().isRefreshing);
  store_->deliver();
  actor_.runUntilIdle();
  EXPECT_EQ(eventIds(), "a ");
  EXPECT_EQ(manager().nextDeadline.get()->id, "event-a");
}

TEST_F(RefreshCycle, ReleasingTheManagerWhileARefreshIsPendingProducesNone) {
  manager().scheduleRefresh();
  actor_.advance(100ms);
  manager_.reset();
  actor_.advance(1h);
  EXPECT_TRUE(store_->calls.empty());
  EXPECT_EQ(actor_.tasks().size(), 0u);
  EXPECT_EQ(actor_.pendingTimers(), 0u);
}

TEST_F(RefreshCycle, ReleasingTheManagerBeforeItsFirstTurnPromptsNobody) {
  store_->eventAccess.status = EKAuthorizationStatus::notDetermined;
  manager().start();
  manager_.reset();
  actor_.advance(48h);
  EXPECT_TRUE(store_->calls.empty());
  EXPECT_EQ(actor_.tasks().size(), 0u);
}

TEST_F(RefreshCycle, ARunningRefreshHoldsItsManagerUntilItHasPublished) {
  store_->holdsCompletions = true;
  refresh();
  const std::weak_ptr<TaskManager> weak = manager_;
  int published = 0;
  const auto watching = manager_->lastRefreshDate.subscribe([&](const auto&) { ++published; });
  published = 0;
  manager_.reset();
  actor_.runUntilIdle();
  EXPECT_FALSE(weak.expired());
  store_->deliver();
  actor_.runUntilIdle();
  EXPECT_EQ(published, 1);
  EXPECT_TRUE(weak.expired());
  EXPECT_EQ(actor_.tasks().size(), 0u);
}

TEST_F(RefreshCycle, ChangesAfterTheManagerIsGoneDoNothing) {
  manager();
  center_.post(EKEventStoreChanged);
  settings_->focusMode = true;
  manager_.reset();
  center_.post(EKEventStoreChanged);
  settings_->focusMode = false;
  actor_.advance(1h);
  EXPECT_TRUE(store_->calls.empty());
  EXPECT_EQ(actor_.pendingTimers(), 0u);
}

TEST_F(RefreshCycle, TheEndOfTheLoopFreesARefreshUnderWay) {
  store_->holdsCompletions = true;
  manager().start();
  actor_.runUntilIdle();
  const std::weak_ptr<TaskManager> weak = manager_;
  actor_.tasks().destroyAll();
  manager_.reset();
  EXPECT_TRUE(weak.expired());
  store_->deliver();
  actor_.runUntilIdle();
}

}  // namespace
}  // namespace orvane
