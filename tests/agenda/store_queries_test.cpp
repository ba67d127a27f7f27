#include "agenda/store_queries.h"

#include "agenda/task_manager_fixture.h"

namespace orvane {
namespace {

class StoreQueries : public TaskManagerTest {
 protected:
  EKEvent& lastEvent() { return store_->storedEvents.back(); }
  EKReminder& lastReminder() { return store_->storedReminders.back(); }

  std::string relevant() {
    const auto window = eventWindow(calendar_, actor_.now());
    std::string ids;
    for (const auto& event : relevantEvents(*store_, {window->start, window->end, std::nullopt},
                                            calendar_, actor_.now())) {
      ids += event.id + " ";
    }
    return ids;
  }
  std::string open() {
    std::string ids;
    for (const auto& r : openReminders(store_->storedReminders, calendar_, locale_)) {
      ids += r.id + " ";
    }
    return ids;
  }
};

TEST_F(StoreQueries, TheWindowIsTodayAndTheSixDaysAfter) {
  const auto window = eventWindow(calendar_, at(20, 12));
  EXPECT_EQ(window->start, at(20, 0));
  EXPECT_EQ(window->end, at(27, 0));
}

TEST_F(StoreQueries, TheWindowKeepsLocalMidnightsAcrossAClockChange) {
  calendar_.changeOffset(at(22, 2), -3600);
  EXPECT_EQ(eventWindow(calendar_, at(20, 12))->end, at(27, 1));
}

TEST_F(StoreQueries, WithoutAnEndThereIsNoWindow) {
  calendar_.setCannotAddDays(true);
  EXPECT_FALSE(eventWindow(calendar_, at(20, 12)));
}

TEST_F(StoreQueries, TodaysEventsStayWhenTheyAreOver) {
  addEvent("over", at(20, 10));
  EXPECT_EQ(relevant(), "over ");
}

TEST_F(StoreQueries, YesterdaysEventThatLastsIntoTodayIsNotKept) {
  addEvent("long", at(19, 22));
  lastEvent().endDate = at(20, 18);
  EXPECT_EQ(relevant(), "");
}

TEST_F(StoreQueries, AMultiDayEventThatBeganTodayIsKept) {
  addEvent("trip", at(20, 0));
  lastEvent().endDate = at(24, 0);
  lastEvent().isAllDay = true;
  EXPECT_EQ(relevant(), "trip ");
}

TEST_F(StoreQueries, TheWeekEndsWithTheWindow) {
  addEvent("last", at(26, 23, 59));
  addEvent("beyond", at(27, 0));
  EXPECT_EQ(relevant(), "last ");
}

TEST_F(StoreQueries, AnEventThatHasJustBegunStaysBecauseItIsOfToday) {
  addEvent("now", at(20, 12));
  EXPECT_EQ(relevant(), "now ");
}

TEST_F(StoreQueries, AllDayEventsComeFirstThenTheEarlierStart) {
  addEvent("timed midnight", at(21, 0));
  addEvent("all-day", at(21, 0));
  lastEvent().isAllDay = true;
  addEvent("afternoon", at(20, 15));
  addEvent("all-day later", at(23, 0));
  lastEvent().isAllDay = true;
  EXPECT_EQ(relevant(), "all-day all-day later afternoon timed midnight ");
}

TEST_F(StoreQueries, TimedEventsAtTheSameStartKeepTheStoresOrder) {
  for (const char* id : {"c", "a", "d", "b"}) addEvent(id, at(20, 15));
  EXPECT_EQ(relevant(), "c a d b ");
}

TEST_F(StoreQueries, OptionsAreByTitleAndIdentifiersInTheStoresOrder) {
  store_->eventCalendars = {{{"1", "work"}, {"2", "Home"}, {"3", "WORK"}, {"4", "alpha"}}};
  const auto listing = listCalendars(*store_, EKEntityType::event, locale_);
  EXPECT_EQ(listing.identifiers, (std::vector<std::string>{"1", "2", "3", "4"}));
  EXPECT_EQ(listing.options,
            (std::vector<EventKitSourceOption>{{"4", "alpha", EKEntityType::event},
                                               {"2", "Home", EKEntityType::event},
                                               {"1", "work", EKEntityType::event},
                                               {"3", "WORK", EKEntityType::event}}));
}

TEST_F(StoreQueries, AStoreThatCannotTellItsCalendarsHasNone) {
  store_->eventCalendars.reset();
  const auto listing = listCalendars(*store_, EKEntityType::event, locale_);
  EXPECT_TRUE(listing.identifiers.empty());
  EXPECT_TRUE(listing.options.empty());
}

TEST_F(StoreQueries, UndatedRemindersFollowDatedOnesFromTheGreatestPriority) {
  addReminder("high");
  lastReminder().priority = 1;
  addReminder("low");
  lastReminder().priority = 9;
  addReminder("none");
  addReminder("dated");
  dueAt(lastReminder(), {2099, 1, 1, 0, 0, 0});
  addReminder("overdue");
  dueAt(lastReminder(), {1999, 1, 1, 0, 0, 0});
  lastReminder().priority = 9;
  EXPECT_EQ(open(), "overdue dated low high none ");
}

TEST_F(StoreQueries, UndatedRemindersOfOnePriorityAreByTitle) {
  for (const char* title : {"pear", "Apple", "apple", "Banana"}) {
    addReminder(title);
    lastReminder().title = title;
  }
  addReminder("untitled");
  lastReminder().title.reset();
  EXPECT_EQ(open(), "untitled Apple apple Banana pear ");
}

TEST_F(StoreQueries, DatedRemindersAtOneInstantKeepTheStoresOrder) {
  for (const char* id : {"z", "a", "m"}) {
    addReminder(id);
    dueAt(lastReminder(), {2026, 11, 21, 9, 0, 0});
    lastReminder().priority = id[0];
  }
  EXPECT_EQ(open(), "z a m ");
}

TEST_F(StoreQueries, ADueDateWithoutACalendarSortsAsUndatedAndIsShownAllTheSame) {
  addReminder("bare");
  dueAt(lastReminder(), {2026, 11, 20, 9, 0, 0});
  lastReminder().dueDateComponents->calendar.reset();
  addReminder("dated");
  dueAt(lastReminder(), {2026, 11, 25, 9, 0, 0});
  EXPECT_EQ(open(), "dated bare ");
  EXPECT_EQ(openReminders(store_->storedReminders, calendar_, locale_).at(1).dueDate, at(20, 9));
}

TEST_F(StoreQueries, CompletedRemindersAreDropped) {
  addReminder("open");
  addReminder("done");
  lastReminder().isCompleted = true;
  EXPECT_EQ(open(), "open ");
}

using StoreQueriesDeathTest = StoreQueries;

TEST_F(StoreQueriesDeathTest, AnEventWithoutAStartStopsTheProcess) {
  addEvent("broken", at(20, 15));
  lastEvent().startDate.reset();
  EXPECT_DEATH(relevant(), "start");
}

}  // namespace
}  // namespace orvane
