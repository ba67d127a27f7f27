// What the store tells of folders that stand still.

#include <gmock/gmock.h>

#include <set>

#include "linux/calendars/shared_library.h"
#include "store_fixture.h"

namespace orvane::host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

using FolderContentTest = StoreFixture;

TEST_F(FolderContentTest, ShowsEventsAndReminders) {
  folder_.calendar("Work/a.ics", event("a", "Standup"));
  folder_.calendar("Errands/b.ics", "TASK b|Buy milk|5");
  openAndRequest();
  EXPECT_THAT(calendarTitles(), ElementsAre("Work"));
  EXPECT_THAT(calendarTitles(EKEntityType::reminder), ElementsAre("Errands"));
  const auto found = events();
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].title, "Standup");
  EXPECT_EQ(found[0].calendar->title, "Work");
  EXPECT_EQ(found[0].startDate, Date{today_});
  EXPECT_EQ(found[0].endDate, Date{today_ + hour});
  const auto tasks = reminders();
  ASSERT_THAT(tasks, SizeIs(1));
  EXPECT_EQ(tasks[0].title, "Buy milk");
  EXPECT_EQ(tasks[0].priority, 5);
  EXPECT_EQ(tasks[0].calendar->title, "Errands");
  EXPECT_FALSE(tasks[0].isCompleted);
}

TEST_F(FolderContentTest, AFolderThatHoldsBothKindsIsBothUnderOneIdentifier) {
  folder_.calendar("Mixed/a.ics", event("a", "Standup"));
  folder_.calendar("Mixed/b.ics", "TASK b|Buy milk|0");
  openAndRequest();
  ASSERT_THAT(calendars(EKEntityType::event), SizeIs(1));
  EXPECT_EQ(calendars(EKEntityType::event), calendars(EKEntityType::reminder));
}

TEST_F(FolderContentTest, AnEmptyFolderIsACalendar) {
  folder_.makeFolder("Empty");
  openAndRequest();
  EXPECT_THAT(calendarTitles(), ElementsAre("Empty"));
  EXPECT_THAT(calendarTitles(EKEntityType::reminder), IsEmpty());
}

TEST_F(FolderContentTest, ASingleFileIsNamedByWhatItSays) {
  folder_.calendar("holidays.ics", "NAME  Public holidays \n" + event("a", "Labour Day"));
  folder_.calendar("plain.ics", event("a", "Something"));
  openAndRequest();
  EXPECT_THAT(calendarTitles(), UnorderedElementsAre("Public holidays", "plain"));
  const auto found = events();
  ASSERT_THAT(found, SizeIs(2));
  EXPECT_EQ(found[0].calendar->title, "Public holidays");
}

TEST_F(FolderContentTest, AnEmptyListOfCalendarsFindsNothingNoListFindsAll) {
  folder_.calendar("Work/a.ics", event("a", "Standup"));
  folder_.calendar("Play/b.ics", event("b", "Chess") + "\nTASK t|Practise|0");
  openAndRequest();
  const auto all = calendars();
  ASSERT_THAT(all, SizeIs(2));
  EXPECT_THAT(events(), SizeIs(2));
  EXPECT_THAT(events(std::vector<std::string>{}), IsEmpty());
  EXPECT_THAT(reminders(std::vector<std::string>{}), IsEmpty());
  const auto some = events(std::vector{all[0].calendarIdentifier});
  ASSERT_THAT(some, SizeIs(1));
  EXPECT_EQ(*some[0].calendar, all[0]);
}

TEST_F(FolderContentTest, FindsWhatOverlapsTheWindow) {
  folder_.calendar("c/a.ics", event("a", "ends before", -hour) + "\n" +
                                  event("b", "reaches in", -hour / 2) + "\n" +
                                  event("c", "last", 7 * day - 1) + "\n" +
                                  event("d", "begins behind", 7 * day));
  openAndRequest();
  EXPECT_THAT(eventTitles(), ElementsAre("reaches in", "last"));
}

TEST_F(FolderContentTest, OneUidInTwoCalendarsIsTwoItems) {
  folder_.calendar("One/a.ics", event("same", "Party") + "\nTASK task|Bake|0");
  folder_.calendar("Two/a.ics", event("same", "Party") + "\nTASK task|Bake|0");
  openAndRequest();
  const auto found = events();
  ASSERT_THAT(found, SizeIs(2));
  EXPECT_NE(found[0].eventIdentifier, found[1].eventIdentifier);
  EXPECT_NE(found[0].calendarItemIdentifier, found[1].calendarItemIdentifier);
  const auto tasks = reminders();
  ASSERT_THAT(tasks, SizeIs(2));
  EXPECT_NE(tasks[0].calendarItemIdentifier, tasks[1].calendarItemIdentifier);
}

TEST_F(FolderContentTest, OneUidTwiceInACalendarIsTwoItemsToo) {
  folder_.calendar("One/a.ics", event("same", "Party") + "\nTASK task|Bake|0");
  folder_.calendar("One/b.ics", event("same", "Party") + "\n" + event("same", "Party") +
                                    "\nTASK task|Bake|0\nTASK task|Bake|0");
  openAndRequest();
  std::set<std::string> identifiers;
  for (const auto& found : events()) identifiers.insert(*found.eventIdentifier);
  EXPECT_THAT(identifiers, SizeIs(3));
  identifiers.clear();
  for (const auto& task : reminders()) identifiers.insert(task.calendarItemIdentifier);
  EXPECT_THAT(identifiers, SizeIs(3));
}

TEST_F(FolderContentTest, OccurrencesShareTheItemAndHaveIdentifiersOfTheirOwn) {
  const auto at = [&](int index) {
    return std::to_string(today_ + index * day) + "|" + std::to_string(today_ + index * day + 60);
  };
  folder_.calendar("c/a.ics", "EVENT u|20261120|Daily|" + at(0) + "\nEVENT u|20261121|Daily|" +
                                  at(1) + "\nEVENT u|20261122|Daily|" + at(2));
  openAndRequest();
  const auto first = events();
  ASSERT_THAT(first, SizeIs(3));
  EXPECT_EQ(first[0].calendarItemIdentifier, first[2].calendarItemIdentifier);
  EXPECT_NE(first[0].eventIdentifier, first[1].eventIdentifier);
  // The same in a window that begins later, and in another run.
  const auto later = events(std::nullopt, 2);
  ASSERT_THAT(later, SizeIs(1));
  EXPECT_EQ(later[0].eventIdentifier, first[2].eventIdentifier);
  openAndRequest();
  const auto again = events();
  ASSERT_THAT(again, SizeIs(3));
  EXPECT_EQ(again[1].eventIdentifier, first[1].eventIdentifier);
}

TEST_F(FolderContentTest, ItemsWithoutAUidAreToldApartByTheirFiles) {
  folder_.calendar("c/a.ics", event("", "One"));
  folder_.calendar("c/b.ics", event("", "Two"));
  openAndRequest();
  const auto found = events();
  ASSERT_THAT(found, SizeIs(2));
  EXPECT_NE(found[0].eventIdentifier, found[1].eventIdentifier);
}

TEST_F(FolderContentTest, ATurnOfTheDayReadsNothingAgain) {
  folder_.calendar("c/a.ics", event("a", "In a week", 7 * day + hour));
  openAndRequest();
  EXPECT_THAT(eventTitles(), IsEmpty());
  EXPECT_THAT(events(std::nullopt, 1), SizeIs(1));
  EXPECT_THAT(folder_.takeReads(), IsEmpty());
}

TEST_F(FolderContentTest, AWindowFarAwayIsReadAnew) {
  folder_.calendar("c/a.ics", event("a", "Next year", 400 * day));
  openAndRequest();
  EXPECT_THAT(events(std::nullopt, 399), SizeIs(1));
  EXPECT_THAT(folder_.takeReads(), SizeIs(1));
  EXPECT_THAT(eventTitles(), IsEmpty());
}

TEST_F(FolderContentTest, WhatIsKeptForTheShownDaysOnlyIsReadAnewForOthers) {
  folder_.calendar("c/dense.ics", "DENSE a");
  folder_.calendar("d/sparse.ics", event("b", "Standup", 3 * day));
  openAndRequest();
  EXPECT_EQ(events()[0].startDate, Date{today_});
  folder_.takeReads();
  EXPECT_THAT(events(), SizeIs(2));
  EXPECT_THAT(folder_.takeReads(), IsEmpty());
  const auto tomorrow = events(std::nullopt, 1);
  ASSERT_THAT(tomorrow, SizeIs(2));
  EXPECT_EQ(tomorrow[0].startDate, Date{today_ + day});
  EXPECT_THAT(folder_.takeReads(), SizeIs(1)) << "the others are known for all days nearby";
}

TEST_F(FolderContentTest, AnotherTimeZoneReadsEverythingAnew) {
  folder_.calendar("c/a.ics", "ZONE a");
  openAndRequest();
  EXPECT_THAT(eventTitles(), ElementsAre("Europe/Berlin"));
  zone_ = "Asia/Tokyo";
  store_->systemChanged();
  ASSERT_TRUE(runUntilAnnounced());
  EXPECT_THAT(eventTitles(), ElementsAre("Asia/Tokyo"));
}

TEST_F(FolderContentTest, SeveralPlacesAreOneBoard) {
  folder_.calendar("Work/a.ics", event("a", "Standup"));
  const auto other = folder_.base() / "other";
  std::filesystem::create_directories(other / "Play");
  std::filesystem::copy(folder_.root() / "Work/a.ics", other / "Play/a.ics");
  options_.roots = {folder_.root().string(), (folder_.base() / "none").string(), other.string()};
  openAndRequest();
  EXPECT_THAT(calendarTitles(), ElementsAre("Work", "Play"));
  EXPECT_THAT(events(), SizeIs(2));
}

TEST(WindowForTest, KeepsAWindowThatWillDo) {
  const ReadWindow window{0, 19 * 86400, "UTC"};
  EXPECT_EQ(windowFor(window, 86400, 8 * 86400, "UTC"), window);
  EXPECT_EQ(windowFor(window, 12 * 86400, 19 * 86400, "UTC"), window);
}

TEST(WindowForTest, MakesANewOneWithAMargin) {
  const ReadWindow window{0, 10 * 86400, "UTC"};
  const ReadWindow next{4 * 86400, 20 * 86400, "UTC"};
  EXPECT_EQ(windowFor(window, 5 * 86400, 12 * 86400, "UTC"), next);
  EXPECT_EQ(windowFor(window, 86400, 86401, "Asia/Tokyo").localTimeZone, "Asia/Tokyo");
  EXPECT_EQ(windowFor({0, 1000 * 86400, "UTC"}, 5 * 86400, 12 * 86400, "UTC"), next)
      << "what nobody asks for is not kept";
}

}  // namespace
}  // namespace orvane::host
