#include <gtest/gtest.h>

#include "foundation/color.h"
#include "foundation/date.h"
#include "foundation/trimmed.h"

namespace orvane {
namespace {

TEST(Trimmed, TakesWhiteSpaceAndLineBreaksOffBothEnds) {
  EXPECT_EQ(trimmed("  a b \t\r\n"), "a b");
  EXPECT_EQ(trimmed("\v\fa"), "a");
  EXPECT_EQ(trimmed("\u00A0\u2003\u3000a\u2028\u0085"), "a");
  EXPECT_EQ(trimmed(" \u202F\n "), "");
  EXPECT_EQ(trimmed(""), "");
  EXPECT_EQ(trimmed("äöü"), "äöü");
}

TEST(Trimmed, LeavesBytesThatAreNoCharactersAlone) {
  EXPECT_EQ(trimmed(" \xC2\xA0\xC2 "), "\xC2");
  EXPECT_EQ(trimmed("\x80 "), "\x80");
}

TEST(Color, OpacityMultiplies) {
  EXPECT_EQ(Color::srgb(1, 0, 0, 0.5).opacity(0.5), Color::srgb(1, 0, 0, 0.25));
  EXPECT_EQ(Color::white().opacity(0.68), Color::system(SystemColor::white, 0.68));
}

TEST(Color, ASystemColourIsNotItsComponentsButLooksLikeThem) {
  EXPECT_NE(Color::white(), Color::srgb(1, 1, 1));
  EXPECT_EQ(Color::white().resolved(), Color::srgb(1, 1, 1).resolved());
  EXPECT_EQ(Color::red().opacity(0.4).resolved().opacity, 0.4);
}

TEST(Color, ADefaultColourIsClear) { EXPECT_EQ(Color(), Color::clear()); }

TEST(Date, CountsInSeconds) {
  const Date date{100};
  EXPECT_EQ(date + 0.5, Date{100.5});
  EXPECT_EQ(date - 1, Date{99});
  EXPECT_EQ(Date{105} - date, 5);
  EXPECT_LT(date, date + 0.001);
}

}  // namespace
}  // namespace orvane
