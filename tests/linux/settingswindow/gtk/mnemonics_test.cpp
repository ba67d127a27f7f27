#include "linux/settingswindow/gtk/mnemonics.h"

#include <gtest/gtest.h>

namespace orvane::window {
namespace {

TEST(Mnemonics, TakeTheFirstFreeLetterOfAWord) {
  Mnemonics mnemonics;
  EXPECT_EQ(mnemonics.mark("Sources"), "_Sources");
  EXPECT_EQ(mnemonics.mark("Display"), "_Display");
  EXPECT_EQ(mnemonics.mark("Smart Next"), "Smart _Next");
  EXPECT_EQ(mnemonics.mark("Style"), "S_tyle");
  EXPECT_EQ(mnemonics.mark("Done"), "D_one");
}

TEST(Mnemonics, LeaveALabelAloneWhenNoLetterIsLeft) {
  Mnemonics mnemonics;
  EXPECT_EQ(mnemonics.mark("a"), "_a");
  EXPECT_EQ(mnemonics.mark("A"), "A");
  EXPECT_EQ(mnemonics.mark(""), "");
  EXPECT_EQ(mnemonics.mark("設定"), "設定");
  EXPECT_EQ(mnemonics.mark("設定 b"), "設定 _b");
}

TEST(Mnemonics, DoubleUnderscores) {
  Mnemonics mnemonics;
  EXPECT_EQ(mnemonics.mark("a_b"), "_a__b");
  EXPECT_EQ(mnemonics.mark("_"), "__");
}

TEST(Mnemonics, AreCopiedWithTheLettersThatAreTaken) {
  Mnemonics common;
  EXPECT_EQ(common.mark("ab"), "_ab");
  Mnemonics one = common;
  Mnemonics other = common;
  EXPECT_EQ(one.mark("ab"), "a_b");
  EXPECT_EQ(other.mark("ab"), "a_b");
}

}  // namespace
}  // namespace orvane::window
