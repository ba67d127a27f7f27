#include "linux/calendars/event_store.h"

#include <gmock/gmock.h>

#include "fakes/manual_main_actor.h"

namespace orvane::host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// What a provider in memory has; shared with the test, since the store owns the provider.
struct Shelf {
  ProviderState state;
  std::vector<EKCalendar> calendars;
  std::vector<EKEvent> events;
  std::vector<EKReminder> reminders;
  CalendarProvider::Callback ready;
  CalendarProvider::Callback changed;
  int starts = 0;
  int stops = 0;
};

class MemoryProvider final : public CalendarProvider {
 public:
  explicit MemoryProvider(std::shared_ptr<Shelf> shelf) : shelf_(std::move(shelf)) {}
  void start(Callback ready, Callback changed) override {
    ++shelf_->starts;
    shelf_->ready = std::move(ready);
    shelf_->changed = std::move(changed);
  }
  void stop() override { ++shelf_->stops; }
  [[nodiscard]] ProviderState state() const override { return shelf_->state; }
  [[nodiscard]] std::vector<EKCalendar> calendars(EKEntityType) override {
    return shelf_->calendars;
  }
  [[nodiscard]] std::vector<EKEvent> events(Date, Date, const CalendarSelection&) override {
    return shelf_->events;
  }
  [[nodiscard]] std::vector<EKReminder> openReminders(const CalendarSelection&) override {
    return shelf_->reminders;
  }

 private:
  std::shared_ptr<Shelf> shelf_;
};

struct Answer {
  bool granted;
  std::string error;
  friend bool operator==(const Answer&, const Answer&) = default;
};

class EventStoreTest : public testing::Test {
 protected:
  void open(std::size_t providers) {
    EventStoreOptions options;
    for (std::size_t i = 0; i < providers; ++i) {
      shelves.push_back(std::make_shared<Shelf>());
      options.providers.push_back(std::make_unique<MemoryProvider>(shelves.back()));
    }
    options.instantOf = [](const DateComponents& components) -> std::optional<Date> {
      return Date{static_cast<double>(components.day.value_or(0))};
    };
    store = makeEventStore(std::move(options), actor, center);
  }
  EKEventStore::AccessCompletion completion() {
    return [this](bool granted, const std::optional<EKError>& error) {
      answers.push_back({granted, error ? error->localizedDescription : ""});
    };
  }
  void ready() {
    for (const auto& shelf : shelves) shelf->ready();
    actor.runUntilIdle();
  }
  EKAuthorizationStatus status(EKEntityType type) { return store->authorizationStatus(type); }

  fakes::ManualMainActor actor;
  NotificationCenter center;
  std::vector<std::shared_ptr<Shelf>> shelves;
  std::unique_ptr<EventStore> store;
  std::vector<Answer> answers;
};

TEST_F(EventStoreTest, IsUndeterminedUntilTheFirstRequestOfEachKind) {
  open(1);
  EXPECT_EQ(status(EKEntityType::event), EKAuthorizationStatus::notDetermined);
  EXPECT_EQ(shelves[0]->starts, 0);
  store->requestFullAccessToEvents(completion());
  EXPECT_EQ(status(EKEntityType::event), EKAuthorizationStatus::notDetermined);
  ready();
  EXPECT_EQ(status(EKEntityType::event), EKAuthorizationStatus::fullAccess);
  EXPECT_EQ(status(EKEntityType::reminder), EKAuthorizationStatus::notDetermined);
  store->requestFullAccessToReminders(completion());
  EXPECT_EQ(answers.size(), 1U) << "never before the call has returned";
  actor.runUntilIdle();
  EXPECT_EQ(status(EKEntityType::reminder), EKAuthorizationStatus::fullAccess);
  EXPECT_EQ(shelves[0]->starts, 1);
}

TEST_F(EventStoreTest, WaitsForEveryProvider) {
  open(2);
  store->requestFullAccessToEvents(completion());
  shelves[0]->ready();
  actor.runUntilIdle();
  EXPECT_THAT(answers, IsEmpty());
  shelves[1]->ready();
  EXPECT_THAT(answers, ElementsAre(Answer{true, ""}));
}

TEST_F(EventStoreTest, AProviderThatHangsDelaysTheOthersByItsLimitAtMost) {
  open(2);
  int announcements = 0;
  const auto observer = center.addObserver(EKEventStoreChanged, [&] { ++announcements; });
  store->requestFullAccessToEvents(completion());
  shelves[0]->state.events = KindAccess::readable;
  shelves[0]->ready();
  actor.advance(std::chrono::milliseconds(9999));
  EXPECT_THAT(answers, IsEmpty());
  actor.advance(std::chrono::milliseconds(1));
  EXPECT_THAT(answers, ElementsAre(Answer{true, ""}));
  store->requestFullAccessToReminders(completion());
  actor.runUntilIdle();
  EXPECT_EQ(answers.size(), 2U) << "nobody waits for it any more";
  EXPECT_EQ(announcements, 0);
  shelves[1]->ready();
  EXPECT_EQ(announcements, 1) << "what comes late is a change";
  actor.advance(std::chrono::minutes(1));
  EXPECT_EQ(answers.size(), 2U);
}

TEST_F(EventStoreTest, ProvidersThatAllHangAreAnEmptyBoardUntilTheyAnswer) {
  open(2);
  store->requestFullAccessToEvents(completion());
  actor.advance(std::chrono::seconds(10));
  EXPECT_THAT(answers, ElementsAre(Answer{true, ""}));
  shelves[0]->state.events = KindAccess::refused;
  shelves[0]->ready();
  EXPECT_EQ(status(EKEntityType::event), EKAuthorizationStatus::denied);
  shelves[1]->state.events = KindAccess::readable;
  shelves[1]->ready();
  EXPECT_EQ(status(EKEntityType::event), EKAuthorizationStatus::fullAccess);
}

TEST_F(EventStoreTest, AProviderThatThisSystemLacksNeitherHelpsNorFails) {
  open(2);
  shelves[0]->state.failure = "The first is broken.";
  shelves[1]->state.isAbsent = true;
  store->requestFullAccessToEvents(completion());
  ready();
  EXPECT_THAT(answers, ElementsAre(Answer{false, "The first is broken."}));
  shelves[0]->state = {};
  EXPECT_EQ(status(EKEntityType::event), EKAuthorizationStatus::fullAccess);
}

TEST_F(EventStoreTest, AProviderThatFailsLaterDoesNotHideTheOther) {
  open(2);
  shelves[0]->state.events = KindAccess::readable;
  shelves[1]->state.events = KindAccess::readable;
  store->requestFullAccessToEvents(completion());
  ready();
  shelves[1]->state = {KindAccess::refused, KindAccess::refused, false, "It went away."};
  shelves[1]->changed();
  EXPECT_EQ(status(EKEntityType::event), EKAuthorizationStatus::fullAccess);
}

TEST_F(EventStoreTest, AnEmptyListIsNoRefusal) {
  open(2);
  store->requestFullAccessToEvents(completion());
  store->requestFullAccessToReminders(completion());
  ready();
  EXPECT_THAT(answers, ElementsAre(Answer{true, ""}, Answer{true, ""}));
}

TEST_F(EventStoreTest, AStoreWithoutProvidersIsAnEmptyBoard) {
  open(0);
  store->requestFullAccessToEvents(completion());
  EXPECT_THAT(answers, IsEmpty());
  actor.runUntilIdle();
  EXPECT_THAT(answers, ElementsAre(Answer{true, ""}));
}

TEST_F(EventStoreTest, IsDeniedOnlyWhatNobodyCanRead) {
  open(2);
  shelves[0]->state.events = KindAccess::refused;
  shelves[0]->state.reminders = KindAccess::refused;
  shelves[1]->state.events = KindAccess::readable;
  store->requestFullAccessToEvents(completion());
  store->requestFullAccessToReminders(completion());
  ready();
  EXPECT_THAT(answers, ElementsAre(Answer{true, ""}, Answer{false, ""}));
  EXPECT_EQ(status(EKEntityType::event), EKAuthorizationStatus::fullAccess);
  EXPECT_EQ(status(EKEntityType::reminder), EKAuthorizationStatus::denied);
}

TEST_F(EventStoreTest, TheStateFollowsWhatHappensLater) {
  open(1);
  store->requestFullAccessToEvents(completion());
  ready();
  shelves[0]->state.events = KindAccess::refused;
  EXPECT_EQ(status(EKEntityType::event), EKAuthorizationStatus::denied);
  shelves[0]->state.events = KindAccess::readable;
  EXPECT_EQ(status(EKEntityType::event), EKAuthorizationStatus::fullAccess);
}

TEST_F(EventStoreTest, FailsOnlyWhenEveryProviderFails) {
  open(2);
  shelves[0]->state.failure = "The first is broken.";
  store->requestFullAccessToEvents(completion());
  ready();
  EXPECT_THAT(answers, ElementsAre(Answer{true, ""}));
  shelves[1]->state.failure = "The second is broken.";
  answers.clear();
  store->requestFullAccessToReminders(completion());
  actor.runUntilIdle();
  EXPECT_THAT(answers, ElementsAre(Answer{false, "The first is broken."}));
  EXPECT_EQ(status(EKEntityType::reminder), EKAuthorizationStatus::denied);
}

TEST_F(EventStoreTest, PutsTogetherWhatTheProvidersHave) {
  open(2);
  shelves[0]->calendars = {{"a", "A"}};
  shelves[1]->calendars = {{"b", "B"}};
  EKEvent late, early;
  late.calendarItemIdentifier = "late";
  late.startDate = Date{20};
  early.calendarItemIdentifier = "early";
  early.startDate = Date{10};
  shelves[0]->events = {late};
  shelves[1]->events = {early};
  EXPECT_EQ(store->calendars(EKEntityType::event)->size(), 2U);
  const auto events = store->events({Date{0}, Date{100}, std::nullopt});
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0].calendarItemIdentifier, "early");
}

TEST_F(EventStoreTest, BoundsOfDueDatesLeaveOutUndatedReminders) {
  open(1);
  const auto due = [](const std::string& name, std::optional<int> day) {
    EKReminder reminder;
    reminder.calendarItemIdentifier = name;
    if (day) reminder.dueDateComponents.emplace().day = *day;
    return reminder;
  };
  shelves[0]->reminders = {due("undated", {}), due("first", 1), due("tenth", 10)};
  std::vector<std::string> names;
  const auto fetch = [&](std::optional<Date> from, std::optional<Date> to) {
    names.clear();
    store->fetchReminders({from, to, std::nullopt}, [&](const auto& found) {
      for (const auto& reminder : *found) names.push_back(reminder.calendarItemIdentifier);
    });
    EXPECT_THAT(names, IsEmpty()) << "never before the call has returned";
    actor.runUntilIdle();
  };
  fetch({}, {});
  EXPECT_THAT(names, ElementsAre("undated", "first", "tenth"));
  fetch(Date{2}, {});
  EXPECT_THAT(names, ElementsAre("tenth"));
  fetch({}, Date{2});
  EXPECT_THAT(names, ElementsAre("first"));
}

TEST_F(EventStoreTest, AnnouncesChangesOfProvidersAndOfTheSystem) {
  open(1);
  int announcements = 0;
  const auto observer = center.addObserver(EKEventStoreChanged, [&] { ++announcements; });
  store->systemChanged();
  actor.runUntilIdle();
  EXPECT_EQ(announcements, 0) << "nobody has asked for anything yet";
  store->requestFullAccessToEvents(completion());
  ready();
  shelves[0]->changed();
  EXPECT_EQ(announcements, 1);
  store->systemChanged();
  actor.runUntilIdle();
  EXPECT_EQ(announcements, 2);
}

TEST_F(EventStoreTest, StopsItsProviders) {
  open(1);
  store.reset();
  EXPECT_EQ(shelves[0]->stops, 1);
}

}  // namespace
}  // namespace orvane::host
