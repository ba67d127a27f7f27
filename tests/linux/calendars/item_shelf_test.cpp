#include "linux/calendars/item_shelf.h"

#include <gmock/gmock.h>

namespace orvane::host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Reread = ItemShelf::Reread;

ListedItem listed(const std::string& name, std::uint64_t stamp) {
  return {name, stamp, false, std::nullopt};
}

wire::FileAnswer goodAnswer(const std::string& title) {
  wire::FileAnswer answer;
  answer.holdsEvents = true;
  answer.events.push_back({"uid", "", title, 0, 1, false});
  return answer;
}

wire::FileAnswer badAnswer(wire::ReadOutcome outcome) {
  wire::FileAnswer answer;
  answer.outcome = outcome;
  return answer;
}

class ItemShelfTest : public testing::Test {
 protected:
  void put(const std::string& name, wire::FileAnswer answer) { shelf.put(name, &answer); }
  std::string titleOf(const std::string& name) {
    const auto* item = shelf.find(name);
    if (item == nullptr || !item->kept || item->kept->events().empty()) return "(nothing)";
    return item->kept->title(item->kept->events()[0].title).value_or("(none)");
  }
  ItemShelf shelf;
};

TEST_F(ItemShelfTest, ReadsWhatIsNewOrChanged) {
  EXPECT_THAT(shelf.merge({listed("a", 1), listed("b", 1)}, Reread::changed).toRead,
              ElementsAre("a", "b"));
  put("a", goodAnswer("A"));
  put("b", goodAnswer("B"));
  const auto merged = shelf.merge({listed("a", 1), listed("b", 2)}, Reread::changed);
  EXPECT_THAT(merged.toRead, ElementsAre("b"));
  EXPECT_TRUE(merged.changed);
  EXPECT_EQ(titleOf("b"), "B") << "the old content must stand until the new one is read";
}

TEST_F(ItemShelfTest, AnUnchangedListingIsNoChange) {
  shelf.merge({listed("a", 1)}, Reread::changed);
  put("a", goodAnswer("A"));
  const auto merged = shelf.merge({listed("a", 1)}, Reread::changed);
  EXPECT_THAT(merged.toRead, IsEmpty());
  EXPECT_FALSE(merged.changed);
}

TEST_F(ItemShelfTest, ForgetsWhatIsGone) {
  shelf.merge({listed("a", 1), listed("b", 1)}, Reread::changed);
  put("a", goodAnswer("A"));
  EXPECT_TRUE(shelf.merge({listed("b", 1)}, Reread::changed).changed);
  EXPECT_EQ(shelf.find("a"), nullptr);
  put("a", goodAnswer("late"));
  EXPECT_EQ(shelf.items().size(), 1U);
}

TEST_F(ItemShelfTest, WhatWasNotReadYetStaysDue) {
  shelf.merge({listed("a", 1)}, Reread::changed);
  put("a", goodAnswer("A"));
  shelf.merge({listed("a", 2)}, Reread::changed);
  EXPECT_TRUE(shelf.hasDue());
  EXPECT_THAT(shelf.merge({listed("a", 2)}, Reread::changed).toRead, ElementsAre("a"));
}

TEST_F(ItemShelfTest, AFreshFileIsReadOnceMore) {
  const ListedItem fresh{"a", 1, true, std::nullopt};
  shelf.merge({fresh}, Reread::changed);
  put("a", goodAnswer("A"));
  EXPECT_THAT(shelf.merge({listed("a", 1)}, Reread::changed).toRead, ElementsAre("a"));
  put("a", goodAnswer("A"));
  EXPECT_THAT(shelf.merge({listed("a", 1)}, Reread::changed).toRead, IsEmpty());
}

TEST_F(ItemShelfTest, ABadFileIsNotTriedAgainUntilItChanges) {
  shelf.merge({listed("a", 1)}, Reread::changed);
  shelf.put("a", nullptr);
  EXPECT_EQ(shelf.find("a")->state, ItemState::bad);
  EXPECT_THAT(shelf.merge({listed("a", 1)}, Reread::changed).toRead, IsEmpty());
  EXPECT_THAT(shelf.merge({listed("a", 2)}, Reread::changed).toRead, ElementsAre("a"));
}

TEST_F(ItemShelfTest, AGoodFileThatTurnsBadIsLookedAtTwice) {
  shelf.merge({listed("a", 1)}, Reread::changed);
  put("a", goodAnswer("A"));
  shelf.merge({listed("a", 2)}, Reread::changed);
  put("a", badAnswer(wire::ReadOutcome::notCalendar));
  EXPECT_TRUE(shelf.hasSuspects());
  EXPECT_EQ(titleOf("a"), "A");
  EXPECT_THAT(shelf.merge({listed("a", 2)}, Reread::suspectsToo).toRead, ElementsAre("a"));
  put("a", badAnswer(wire::ReadOutcome::notCalendar));
  EXPECT_FALSE(shelf.hasSuspects());
  EXPECT_EQ(titleOf("a"), "(nothing)");
}

TEST_F(ItemShelfTest, ASuspectThatIsWholeAgainIsGood) {
  shelf.merge({listed("a", 1)}, Reread::changed);
  put("a", goodAnswer("A"));
  shelf.merge({listed("a", 2)}, Reread::changed);
  put("a", badAnswer(wire::ReadOutcome::notCalendar));
  shelf.merge({listed("a", 3)}, Reread::changed);
  put("a", goodAnswer("A2"));
  EXPECT_FALSE(shelf.hasSuspects());
  EXPECT_EQ(titleOf("a"), "A2");
}

TEST_F(ItemShelfTest, WhatCannotBeLookedAtIsUnreadable) {
  EXPECT_THAT(shelf.merge({listed("a", 0)}, Reread::changed).toRead, IsEmpty());
  EXPECT_EQ(shelf.find("a")->state, ItemState::unreadable);
}

TEST(HoldingsTest, AreRefusedWhenNothingGoodIsThere) {
  ShelfItem good, bad, closed;
  good.state = ItemState::good;
  bad.state = ItemState::bad;
  closed.state = ItemState::unreadable;
  EXPECT_TRUE(holdingsOf({&closed}).areRefused);
  EXPECT_TRUE(holdingsOf({&closed, &bad}).areRefused);
  EXPECT_FALSE(holdingsOf({&closed, &good}).areRefused);
  EXPECT_FALSE(holdingsOf({&bad}).areRefused);
  EXPECT_FALSE(holdingsOf({}).areRefused);
}

TEST(KeptFileTest, KeepsEachTextOnce) {
  wire::FileAnswer answer;
  for (int i = 0; i < 3; ++i) {
    answer.events.push_back({"uid", std::to_string(i), "Daily", i * 10.0, i * 10.0 + 1, false});
  }
  answer.events.push_back({"uid", "3", std::nullopt, 40, 41, true});
  const auto kept = KeptFile::from(answer);
  ASSERT_EQ(kept->events().size(), 4U);
  EXPECT_EQ(kept->events()[0].title, kept->events()[2].title);
  EXPECT_EQ(kept->events()[0].uid, kept->events()[3].uid);
  EXPECT_EQ(kept->title(kept->events()[3].title), std::nullopt);
  EXPECT_EQ(kept->text(kept->events()[2].recurrenceId), "2");
}

TEST(KeptFileTest, KeepsNothingOfAFileWithNothingToShow) {
  wire::FileAnswer answer;
  answer.holdsEvents = true;
  EXPECT_EQ(KeptFile::from(answer), nullptr);
}

}  // namespace
}  // namespace orvane::host
