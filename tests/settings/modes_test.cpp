#include <gtest/gtest.h>

#include <string>

#include "settings/display_mode.h"
#include "settings/theme_mode.h"

namespace orvane {
namespace {

TEST(DashboardDisplayMode, HasItsCasesInOrderWithTheirTexts) {
  std::string texts;
  for (const auto mode : allDashboardDisplayModes) {
    texts += std::string(rawValue(mode)) + " ";
    EXPECT_EQ(displayModeFromRawValue(rawValue(mode)), mode);
  }
  EXPECT_EQ(texts, "main all selected ");
}

TEST(DashboardDisplayMode, UnknownTextsConstructNothing) {
  for (const char* text : {"", "Main", "ALL", "selected ", "none"}) {
    EXPECT_EQ(displayModeFromRawValue(text), std::nullopt) << text;
  }
}

TEST(DashboardThemeMode, HasItsCasesInOrderWithTheirTexts) {
  std::string texts;
  for (const auto mode : allDashboardThemeModes) {
    texts += std::string(rawValue(mode)) + " ";
    EXPECT_EQ(themeModeFromRawValue(rawValue(mode)), mode);
  }
  EXPECT_EQ(texts, "vividBlue dark light ");
}

TEST(DashboardThemeMode, UnknownTextsConstructNothing) {
  for (const char* text : {"", "Dark", "vividblue", " light"}) {
    EXPECT_EQ(themeModeFromRawValue(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace orvane
