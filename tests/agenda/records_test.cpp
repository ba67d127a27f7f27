#include "agenda/records.h"

#include <gtest/gtest.h>

#include <functional>

#include "agenda/next_deadline.h"
#include "fakes/memory_app_service.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/plain_locale.h"

namespace orvane {
namespace {

const DashboardEvent event{"1", "Title", "Calendar", "cal", {100}, {200}, false};
const DashboardReminder reminder{"1", "Title", "List", "list", Date{100}, 5};
const DashboardDeadline deadline{
    "event-1", "Title", "Calendar", {100}, DashboardDeadlineSource::calendar};

template <class Record>
void expectDiffers(const Record& base, const std::function<void(Record&)>& change) {
  Record other = base;
  EXPECT_EQ(other, base);
  change(other);
  EXPECT_NE(other, base);
}

TEST(Records, EventsAreEqualOnlyInEveryField) {
  expectDiffers<DashboardEvent>(event, [](auto& e) { e.id = "2"; });
  expectDiffers<DashboardEvent>(event, [](auto& e) { e.title = "title"; });
  expectDiffers<DashboardEvent>(event, [](auto& e) { e.calendarTitle = ""; });
  expectDiffers<DashboardEvent>(event, [](auto& e) { e.calendarIdentifier = ""; });
  expectDiffers<DashboardEvent>(event, [](auto& e) { e.startDate = {100.001}; });
  expectDiffers<DashboardEvent>(event, [](auto& e) { e.endDate = {201}; });
  expectDiffers<DashboardEvent>(event, [](auto& e) { e.isAllDay = true; });
}

TEST(Records, RemindersAreEqualOnlyInEveryField) {
  expectDiffers<DashboardReminder>(reminder, [](auto& r) { r.id = "2"; });
  expectDiffers<DashboardReminder>(reminder, [](auto& r) { r.title = ""; });
  expectDiffers<DashboardReminder>(reminder, [](auto& r) { r.calendarTitle = ""; });
  expectDiffers<DashboardReminder>(reminder, [](auto& r) { r.calendarIdentifier = ""; });
  expectDiffers<DashboardReminder>(reminder, [](auto& r) { r.dueDate = Date{101}; });
  expectDiffers<DashboardReminder>(reminder, [](auto& r) { r.dueDate.reset(); });
  expectDiffers<DashboardReminder>(reminder, [](auto& r) { r.priority = -5; });
}

TEST(Records, DeadlinesAreEqualOnlyInEveryField) {
  expectDiffers<DashboardDeadline>(deadline, [](auto& d) { d.id = "event-2"; });
  expectDiffers<DashboardDeadline>(deadline, [](auto& d) { d.title = ""; });
  expectDiffers<DashboardDeadline>(deadline, [](auto& d) { d.subtitle = ""; });
  expectDiffers<DashboardDeadline>(deadline, [](auto& d) { d.date = {99}; });
  expectDiffers<DashboardDeadline>(deadline,
                                   [](auto& d) { d.source = DashboardDeadlineSource::reminder; });
}

TEST(Records, OptionsAreEqualOnlyInEveryField) {
  const EventKitSourceOption option{"1", "Work", EKEntityType::event};
  expectDiffers<EventKitSourceOption>(option, [](auto& o) { o.id = "2"; });
  expectDiffers<EventKitSourceOption>(option, [](auto& o) { o.title = ""; });
  expectDiffers<EventKitSourceOption>(option, [](auto& o) { o.type = EKEntityType::reminder; });
}

TEST(Records, AReminderWithoutADueDateIsValidAndYieldsNoDeadline) {
  fakes::MemoryUserDefaults defaults;
  fakes::MemoryAppService service;
  const DashboardSettings settings(defaults, service);
  const std::vector<DashboardReminder> undated = {{"1", "T", "L", "l", std::nullopt, 0}};
  EXPECT_EQ(undated[0], undated[0]);
  EXPECT_EQ(findNextDeadline({}, undated, settings, fakes::PlainLocale(), {0}), std::nullopt);
}

TEST(Records, AnEventAndAReminderOfOneIdentifierGiveDifferentDeadlines) {
  fakes::MemoryUserDefaults defaults;
  fakes::MemoryAppService service;
  const DashboardSettings settings(defaults, service);
  const fakes::PlainLocale locale;
  const auto ofEvent = findNextDeadline(std::vector{event}, {}, settings, locale, {0});
  const auto ofReminder = findNextDeadline({}, std::vector{reminder}, settings, locale, {0});
  EXPECT_EQ(ofEvent->id, "event-1");
  EXPECT_EQ(ofReminder->id, "reminder-1");
  EXPECT_NE(*ofEvent, *ofReminder);
}

TEST(Records, DeadlineSourcesAreKnownByTheirExactTexts) {
  EXPECT_EQ(rawValue(DashboardDeadlineSource::calendar), "calendar");
  EXPECT_EQ(rawValue(DashboardDeadlineSource::reminder), "reminder");
  EXPECT_EQ(deadlineSourceFromRawValue("calendar"), DashboardDeadlineSource::calendar);
  EXPECT_EQ(deadlineSourceFromRawValue("reminder"), DashboardDeadlineSource::reminder);
  EXPECT_EQ(deadlineSourceFromRawValue("Calendar"), std::nullopt);
  EXPECT_EQ(deadlineSourceFromRawValue(""), std::nullopt);
}

TEST(Records, AChangeOfTheMessageAloneIsAChangeOfState) {
  using State = EventKitAuthorizationState;
  EXPECT_EQ(State::denied("a"), State::denied("a"));
  EXPECT_NE(State::denied("a"), State::denied("b"));
  EXPECT_EQ(State::unknown(), State::unknown());
  EXPECT_EQ(State::authorized(), State::authorized());
  EXPECT_NE(State::unknown(), State::authorized());
  EXPECT_NE(State::denied(""), State::unknown());
  EXPECT_NE(State::denied(""), State::authorized());
}

}  // namespace
}  // namespace orvane
