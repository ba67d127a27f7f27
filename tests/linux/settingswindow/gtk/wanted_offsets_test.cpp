#include "linux/settingswindow/gtk/wanted_offsets.h"

#include <gtest/gtest.h>

namespace orvane::window {
namespace {

TEST(WantedOffsets, AreTakenOnceThereIsThatMuchToScroll) {
  WantedOffsets wanted;
  wanted.want({{"list", 120}, {"page", 40}});
  EXPECT_EQ(wanted.take("list", 119), std::nullopt);
  EXPECT_TRUE(wanted.isWaiting("list"));
  EXPECT_EQ(wanted.take("list", 120), 120);
  EXPECT_EQ(wanted.take("list", 500), std::nullopt);
  EXPECT_EQ(wanted.offsets(), (WantedOffsets::Offsets{{"page", 40}}));
}

TEST(WantedOffsets, OfAnUnknownPartAreNone) {
  WantedOffsets wanted;
  EXPECT_FALSE(wanted.isWaiting("list"));
  EXPECT_EQ(wanted.take("list", 1000), std::nullopt);
  wanted.giveUp("list");
  EXPECT_TRUE(wanted.offsets().empty());
}

TEST(WantedOffsets, AreGivenUpByScrollingElsewhere) {
  WantedOffsets wanted;
  wanted.want({{"list", 120}, {"page", 40}});
  wanted.giveUp("list");
  EXPECT_EQ(wanted.take("list", 1000), std::nullopt);
  EXPECT_EQ(wanted.take("page", 1000), 40);
}

TEST(WantedOffsets, AreThoseThatWereWantedLast) {
  WantedOffsets wanted;
  wanted.want({{"list", 120}});
  wanted.want({{"page", 40}});
  EXPECT_FALSE(wanted.isWaiting("list"));
  EXPECT_TRUE(wanted.isWaiting("page"));
}

}  // namespace
}  // namespace orvane::window
