#include "wallpaper/screen_id.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "fakes/memory_window_server.h"

namespace orvane {
namespace {

NSScreen unnumbered(Rect frame) { return {frame, frame, std::nullopt, "screen"}; }

TEST(ScreenID, IsTheNumberWhereThereIsOne) {
  EXPECT_EQ(screenID({{0, 0, 10, 10}, {0, 0, 10, 10}, 724061423, "a"}), "724061423");
  EXPECT_EQ(screenID({{0, 0, 10, 10}, {0, 0, 10, 10}, -5, "a"}), "-5");
}

TEST(ScreenID, IsTheFrameWhereThereIsNoNumber) {
  EXPECT_EQ(screenID(unnumbered({-1920, 0, 1920, 1080})), "-1920:0:1920:1080");
  EXPECT_EQ(screenID(unnumbered({0, 0, 1512, 982})), "0:0:1512:982");
}

TEST(ScreenID, TruncatesTowardsZero) {
  EXPECT_EQ(screenID(unnumbered({-0.9, -1.9, 1279.99, 719.5})), "0:-1:1279:719");
}

TEST(ScreenIDDeathTest, AFrameBeyondIntegersStopsTheProcess) {
  EXPECT_DEATH(static_cast<void>(screenID(unnumbered({std::nan(""), 0, 1, 1}))), "frame");
  EXPECT_DEATH(static_cast<void>(screenID(unnumbered({0, 1e19, 1, 1}))), "frame");
  EXPECT_DEATH(
      static_cast<void>(screenID(unnumbered({0, 0, std::numeric_limits<double>::infinity(), 1}))),
      "frame");
}

TEST(AvailableDisplays, NamesTheMainScreenWhateverItsSize) {
  fakes::MemoryWindowServer server;
  server.attach("left", {0, 0, 1920, 1080}, 11).visibleFrame = {0, 25, 1920, 1055};
  server.attach("right", {1920, 0, 2560, 1440}, std::nullopt);
  EXPECT_EQ(availableDisplays(server),
            (std::vector<DisplayOption>{{"11", "Display 1 - Main"},
                                        {"1920:0:2560:1440", "Display 2 - 2560 x 1440"}}));
  server.mainIdentity = "right";
  EXPECT_EQ(availableDisplays(server),
            (std::vector<DisplayOption>{{"11", "Display 1 - 1920 x 1055"},
                                        {"1920:0:2560:1440", "Display 2 - Main"}}));
}

TEST(AvailableDisplays, IsEmptyWithoutScreens) {
  EXPECT_TRUE(availableDisplays(fakes::MemoryWindowServer()).empty());
}

TEST(AvailableDisplays, TruncatesSizes) {
  fakes::MemoryWindowServer server;
  server.attach("left", {0, 0, 1920, 1080}, 11);
  server.attach("right", {1920, 0, 1706.67, 959.99}, 22);
  EXPECT_EQ(availableDisplays(server).at(1).name, "Display 2 - 1706 x 959");
}

}  // namespace
}  // namespace orvane
