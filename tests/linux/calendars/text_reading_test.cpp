#include "linux/calendars/text_reading.h"

#include <glib.h>
#include <gmock/gmock.h>

#include "calendar_folder.h"
#include "fakes/manual_main_actor.h"
#include "linux/mainloop/main_loop.h"

namespace orvane::host {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

const ReadWindow week{0, 700'000, "Europe/Berlin"};
const ShownSpan shownWeek{0, 700'000};

std::string calendar(const std::string& lines) { return "BEGIN:VCALENDAR\n" + lines; }

class TextReadingTest : public testing::Test {
 protected:
  TextReading::Done noting(const std::string& name) {
    return [this, name](const TextContent* content, TextFailure failure) {
      auto word = std::string(failure == TextFailure::program ? "no program" : "no text");
      if (content != nullptr) word = content->item->kept->text(0);
      outcomes.push_back(name + ": " + word);
      prints.push_back(content != nullptr ? content->print : 0);
    };
  }

  CalendarFolder folder;
  fakes::ManualMainActor actor;
  std::vector<std::string> outcomes;
  std::vector<std::uint64_t> prints;
};

TEST_F(TextReadingTest, ReadsTextsThatAreNoFiles) {
  TextReading reading(folder.reader(), actor);
  reading.read(calendar("EVENT one||Lunch|10|20\n"), week, shownWeek, noting("a"));
  reading.read(calendar("TASK two|Dishes|0\n"), week, shownWeek, noting("b"));
  EXPECT_TRUE(outcomes.empty()) << "never before the call has returned";
  actor.runUntilIdle();
  EXPECT_THAT(outcomes, ElementsAre("a: one", "b: two"));
}

TEST_F(TextReadingTest, ReadsInTheWindowThatBelongsToTheText) {
  TextReading reading(folder.reader(), actor);
  auto later = week;
  later.localTimeZone = "Asia/Tokyo";
  std::vector<std::string> zones;
  const auto noteZone = [&zones](const TextContent* content, TextFailure) {
    zones.push_back(content->item->kept->title(content->item->kept->events()[0].title).value());
  };
  reading.read(calendar("ZONE a\n"), week, shownWeek, noteZone);
  reading.read(calendar("ZONE b\n"), later, shownWeek, noteZone);
  actor.runUntilIdle();
  EXPECT_THAT(zones, ElementsAre("Europe/Berlin", "Asia/Tokyo"));
}

TEST_F(TextReadingTest, WhatIsNoCalendarCostsItselfAlone) {
  TextReading reading(folder.reader(), actor);
  reading.read("nonsense", week, shownWeek, noting("a"));
  reading.read(calendar("CRASH\n"), week, shownWeek, noting("b"));
  reading.read(calendar("EVENT one||Lunch|10|20\n"), week, shownWeek, noting("c"));
  actor.runUntilIdle();
  EXPECT_THAT(outcomes, UnorderedElementsAre("a: no text", "b: no text", "c: one"));
}

TEST_F(TextReadingTest, WhatHangsCostsItselfAlone) {
  TextReading reading(folder.reader(), actor, {500, 2, milliseconds(300), milliseconds(600)});
  reading.read(calendar("HANG\n"), week, shownWeek, noting("a"));
  reading.read(calendar("EVENT one||Lunch|10|20\n"), week, shownWeek, noting("b"));
  actor.runUntilIdle();
  EXPECT_THAT(outcomes, ElementsAre("b: one", "a: no text"));
}

// With real threads, and limits that no test lives to see the end of.
class TextReadingBesideASlowOneTest : public TextReadingTest {
 protected:
  void runUntil(std::size_t count) {
    bool isLate = false;
    const auto limit = loop->after(minutes(1), [&isLate] { isLate = true; });
    while (outcomes.size() < count && !isLate) g_main_context_iteration(nullptr, TRUE);
  }
  std::unique_ptr<MainLoop> loop = makeMainLoop();
};

TEST_F(TextReadingBesideASlowOneTest, NeitherNeighboursNorWhatComesLaterWaitForIt) {
  TextReading reading(folder.reader(), *loop, {500, 2, milliseconds(500), minutes(60)});
  reading.read(calendar("HANG\n"), week, shownWeek, noting("slow"));
  reading.read(calendar("EVENT one||Lunch|10|20\n"), week, shownWeek, noting("a"));
  runUntil(1);
  reading.read(calendar("EVENT two||Lunch|10|20\n"), week, shownWeek, noting("b"));
  runUntil(2);
  reading.read(calendar("HANG\n"), week, shownWeek, noting("slow too"));
  reading.read(calendar("EVENT three||Lunch|10|20\n"), week, shownWeek, noting("c"));
  runUntil(3);
  EXPECT_THAT(outcomes, ElementsAre("a: one", "b: two", "c: three"));
}

TEST_F(TextReadingBesideASlowOneTest, EachAnswerIsHandedOverWhenItIsThere) {
  TextReading reading(folder.reader(), *loop, {500, 2, minutes(60), minutes(60)});
  reading.read(calendar("EVENT one||Lunch|10|20\n"), week, shownWeek, noting("a"));
  reading.read(calendar("HANG\n"), week, shownWeek, noting("slow"));
  runUntil(1);
  EXPECT_THAT(outcomes, ElementsAre("a: one"));
}

TEST_F(TextReadingTest, TellsEqualContentsFromOthers) {
  TextReading reading(folder.reader(), actor);
  for (const auto* title : {"Lunch", "Lunch", "Dinner"}) {
    reading.read(calendar(std::string("EVENT one||") + title + "|10|20\n"), week, shownWeek,
                 noting("a"));
    actor.runUntilIdle();
  }
  EXPECT_EQ(prints[0], prints[1]);
  EXPECT_NE(prints[0], prints[2]);
}

TEST_F(TextReadingTest, AMissingProgramIsTold) {
  TextReading reading("/nonexistent/reader", actor);
  reading.read(calendar(""), week, shownWeek, noting("a"));
  actor.runUntilIdle();
  EXPECT_THAT(outcomes, ElementsAre("a: no program"));
}

TEST_F(TextReadingTest, NothingIsCalledAfterTheStop) {
  auto reading = std::make_unique<TextReading>(folder.reader(), actor);
  reading->read(calendar("EVENT one||Lunch|10|20\n"), week, shownWeek, noting("a"));
  reading->stop();
  reading.reset();
  actor.runUntilIdle();
  EXPECT_TRUE(outcomes.empty());
}

TEST_F(TextReadingTest, ATextOfSeveralMegabytesIsReadWhole) {
  TextReading reading(folder.reader(), actor);
  std::string lines = "EVENT one||Lunch|10|20\n";
  for (int i = 0; i < 100'000; ++i)
    lines += "EVENT x" + std::to_string(i) + "||Far|900000|900001\n";
  lines += "EVENT last||Dinner|30|40\n";
  std::size_t count = 0;
  reading.read(calendar(lines), week, shownWeek, [&count](const TextContent* content, TextFailure) {
    count = content->item->kept->events().size();
  });
  actor.runUntilIdle();
  EXPECT_EQ(count, 2U);
}

}  // namespace
}  // namespace orvane::host
