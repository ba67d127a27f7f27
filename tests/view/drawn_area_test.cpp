#include "view/drawn_area.h"

#include <gtest/gtest.h>

namespace orvane {
void PrintTo(const PixelRect& rect, std::ostream* out) {
  *out << rect.width << "x" << rect.height << "+" << rect.x << "+" << rect.y;
}

namespace {

using Area = DrawnArea<PixelRect>;

constexpr PixelRect screen{0, 0, 1000, 600};

TEST(DrawnArea, BeginsWithWhatIsNeeded) {
  Area area;
  EXPECT_TRUE(area.area().isEmpty());
  EXPECT_TRUE(area.update({40, 40, 221, 100}, screen, {}));
  EXPECT_EQ(area.area(), (PixelRect{40, 40, 221, 100}));
}

TEST(DrawnArea, GrowsAtOnceToEverySide) {
  Area area;
  area.update({64, 64, 64, 64}, screen, {0});
  EXPECT_TRUE(area.update({32, 96, 64, 64}, screen, {1}));
  EXPECT_EQ(area.area(), (PixelRect{32, 64, 96, 96}));
}

TEST(DrawnArea, StaysWhileWhatIsNeededFits) {
  Area area;
  area.update({64, 64, 100, 64}, screen, {0});
  EXPECT_FALSE(area.update({64, 64, 70, 64}, screen, {1}));
  EXPECT_EQ(area.area(), (PixelRect{64, 64, 100, 64}));
}

TEST(DrawnArea, ShrinksWhenItWasTooLargeForAWhile) {
  Area area;
  area.update({64, 64, 320, 64}, screen, {0});
  for (int second = 1; second < 10; ++second) {
    EXPECT_FALSE(area.update({64, 64, 64, 64}, screen, {static_cast<double>(second)}));
  }
  EXPECT_TRUE(area.update({64, 64, 64, 64}, screen, {11}));
  EXPECT_EQ(area.area(), (PixelRect{64, 64, 64, 64}));
}

TEST(DrawnArea, ShrinksOnlyToAllThatWasNeededMeanwhile) {
  Area area;
  area.update({64, 64, 320, 64}, screen, {0});
  area.update({64, 64, 64, 64}, screen, {1});
  area.update({64, 64, 160, 64}, screen, {5});
  EXPECT_TRUE(area.update({64, 64, 64, 64}, screen, {12}));
  EXPECT_EQ(area.area(), (PixelRect{64, 64, 160, 64}));
}

TEST(DrawnArea, WaitBeginsAnewWhenAllOfItIsNeeded) {
  Area area;
  area.update({64, 64, 320, 64}, screen, {0});
  area.update({64, 64, 64, 64}, screen, {1});
  area.update({64, 64, 320, 64}, screen, {9});
  EXPECT_FALSE(area.update({64, 64, 64, 64}, screen, {12}));
  EXPECT_TRUE(area.update({64, 64, 64, 64}, screen, {20}));
}

TEST(DrawnArea, ClockThatIsSetBackDoesNotProlongTheWait) {
  Area area;
  area.update({64, 64, 320, 64}, screen, {1000});
  EXPECT_FALSE(area.update({64, 64, 64, 64}, screen, {100}));
  EXPECT_TRUE(area.update({64, 64, 64, 64}, screen, {111}));
}

TEST(DrawnArea, StaysWhereAllOfItIsNeededNowAndThen) {
  Area area;
  area.update({0, 0, 100, 10}, screen, {0});
  for (int second = 1; second < 100; ++second) {
    const int width = second % 9 == 0 ? 100 : 50;
    EXPECT_FALSE(area.update({0, 0, width, 10}, screen, {static_cast<double>(second)})) << second;
  }
}

TEST(DrawnArea, BeginsAnewWhenReset) {
  Area area;
  area.update({0, 0, 100, 100}, screen, {0});
  area.reset();
  EXPECT_TRUE(area.area().isEmpty());
  EXPECT_TRUE(area.update({1, 2, 3, 4}, screen, {1}));
  EXPECT_EQ(area.area(), (PixelRect{1, 2, 3, 4}));
}

TEST(DrawnArea, FollowsAScreenThatBecomesSmaller) {
  Area area;
  area.update({0, 0, 1000, 600}, screen, {0});
  EXPECT_TRUE(area.update({0, 0, 500, 300}, {0, 0, 500, 300}, {1}));
  EXPECT_EQ(area.area(), (PixelRect{0, 0, 500, 300}));
}

}  // namespace
}  // namespace orvane
