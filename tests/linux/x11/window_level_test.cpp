#include "linux/x11/window_level.h"

#include <gtest/gtest.h>

namespace orvane::host::x11 {
namespace {

TEST(WindowLevel, DesktopLiesBelowTheMenusBackstopBelowOrdinaryWindows) {
  EXPECT_LT(levelForKey(CGWindowLevelKey::desktopWindow),
            levelForKey(CGWindowLevelKey::backstopMenu) - 1);
  EXPECT_LT(levelForKey(CGWindowLevelKey::backstopMenu), 0);
}

TEST(WindowLevel, WhatIsNotAboveTheDesktopIsAtIt) {
  const std::int64_t desktop = levelForKey(CGWindowLevelKey::desktopWindow);
  EXPECT_TRUE(isDesktopLevel(desktop));
  EXPECT_TRUE(isDesktopLevel(desktop - 1));
  EXPECT_FALSE(isDesktopLevel(desktop + 1));
  EXPECT_FALSE(isDesktopLevel(0));
  EXPECT_FALSE(isDesktopLevel(2));
}

}  // namespace
}  // namespace orvane::host::x11
