#include "linux/settingswindow/gtk/accent.h"

#include <gtest/gtest.h>

namespace orvane::window {
namespace {

constexpr SRGB kWhite{1, 1, 1, 1};
constexpr SRGB kBlack{0, 0, 0, 1};
constexpr SRGB kDarkTheme{0.21, 0.21, 0.21, 1};
constexpr SRGB kLightTheme{0.96, 0.96, 0.96, 1};

TEST(Accent, ContrastIsTheOneOfTheStandard) {
  EXPECT_DOUBLE_EQ(contrast(kWhite, kBlack), 21);
  EXPECT_DOUBLE_EQ(contrast(kBlack, kWhite), 21);
  EXPECT_DOUBLE_EQ(contrast(kWhite, kWhite), 1);
  EXPECT_NEAR(contrast({1, 0, 0, 1}, kWhite), 4.0, 0.01);
}

TEST(Accent, StaysAsItIsWhereItCanBeSeen) {
  const SRGB blue{0.208, 0.518, 0.894, 1};
  EXPECT_EQ(visibleOn(blue, kLightTheme), blue);
}

TEST(Accent, OfEveryHueCanBeSeenOnLightAndDark) {
  const SRGB colors[] = {{0.08, 0.33, 0.62, 1}, {1, 1, 0, 1},       {0, 0, 0, 1},
                         {1, 1, 1, 1},          {0.5, 0.5, 0.5, 1}, {0.9, 0.2, 0.6, 1},
                         {0, 0.4, 0, 1},        {0, 0, 0.3, 1},     {0.3, 0, 0, 1},
                         {0, 1, 1, 1},          {0.6, 0.4, 0.9, 1}, {1, 0.5, 0, 1}};
  for (const auto& color : colors) {
    for (const auto& background : {kDarkTheme, kLightTheme}) {
      EXPECT_GE(contrast(visibleOn(color, background), background), 3)
          << color.red << ' ' << color.green << ' ' << color.blue;
    }
  }
}

TEST(Accent, KeepsItsHue) {
  const SRGB moved = visibleOn({0.08, 0.33, 0.62, 1}, kDarkTheme);
  EXPECT_GT(moved.blue, moved.green);
  EXPECT_GT(moved.green, moved.red);
  const SRGB yellow = visibleOn({1, 1, 0, 1}, kLightTheme);
  EXPECT_NEAR(yellow.red, yellow.green, 1e-9);
  EXPECT_NEAR(yellow.blue, 0, 1e-9);
}

TEST(Accent, HasTextThatCanBeRead) {
  EXPECT_EQ(textOn({0.2, 0.5, 0.9, 1}), kWhite);
  EXPECT_EQ(textOn({1, 0.9, 0.2, 1}), kBlack);
}

}  // namespace
}  // namespace orvane::window
