#include "dashboard/board_metrics.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

TEST(ColumnWidths, ArePartsOfTheWindowWithinBounds) {
  EXPECT_EQ(columnWidths(1440), (ColumnWidths{1440 * 0.28, 520}));
  EXPECT_NEAR(columnWidths(1440).left, 403.2, 0.05);
  EXPECT_EQ(columnWidths(1920), (ColumnWidths{420, 520}));
  EXPECT_EQ(columnWidths(1024).left, 315);
  EXPECT_NEAR(columnWidths(1024).right, 389.12, 0.005);
}

TEST(ColumnWidths, TheLeftOneAtItsBounds) {
  EXPECT_NEAR(columnWidths(1125).left, 315, 1e-9);
  EXPECT_NEAR(columnWidths(1126).left, 315.28, 1e-9);
  EXPECT_NEAR(columnWidths(1500).left, 420, 1e-9);
  EXPECT_EQ(columnWidths(1501).left, 420);
}

TEST(ColumnWidths, TheRightOneAtItsBounds) {
  EXPECT_EQ(columnWidths(947.36).right, 360);
  EXPECT_GT(columnWidths(947.38).right, 360);
  EXPECT_LT(columnWidths(1368.41).right, 520);
  EXPECT_EQ(columnWidths(1368.43).right, 520);
  EXPECT_EQ(columnWidths(0), (ColumnWidths{315, 360}));
}

TEST(BoardPadding, StepsWithTheWindow) {
  EXPECT_EQ(boardPadding({1599, 999}), (EdgeInsets{42, 36, 28, 28}));
  EXPECT_EQ(boardPadding({1600, 1000}), (EdgeInsets{64, 72, 28, 28}));
  EXPECT_EQ(boardPadding({1600, 999}).top, 42);
  EXPECT_EQ(boardPadding({1599, 1000}).leading, 36);
}

}  // namespace
}  // namespace orvane
