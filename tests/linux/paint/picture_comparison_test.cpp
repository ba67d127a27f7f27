#include "picture_comparison.h"

#include <gtest/gtest.h>

namespace orvane::testing_pictures {
namespace {

host::Picture grey(int width, int height) {
  host::Picture picture(width, height);
  for (auto& pixel : picture.pixels) pixel = 0xFF808080;
  return picture;
}

TEST(PictureComparison, EqualPicturesMatch) {
  const Comparison result = compare(grey(4, 3), grey(4, 3));
  EXPECT_TRUE(result.matches);
  EXPECT_EQ(result.differences, 0);
  EXPECT_EQ(result.largest, 0);
}

TEST(PictureComparison, SizesThatDifferNeverMatch) {
  EXPECT_FALSE(compare(grey(4, 3), grey(3, 4), {255, 1000}).matches);
}

TEST(PictureComparison, ADifferenceUpToTheToleranceDoesNotCount) {
  host::Picture other = grey(4, 3);
  other.pixels[5] = 0xFF808380;
  EXPECT_TRUE(compare(grey(4, 3), other, {3, 0}).matches);
  EXPECT_FALSE(compare(grey(4, 3), other, {2, 0}).matches);
  EXPECT_EQ(compare(grey(4, 3), other).largest, 3);
}

TEST(PictureComparison, EveryChannelCountsInBothDirections) {
  for (const std::uint32_t pixel : {0xFF808090U, 0xFF807080U, 0xFF908080U, 0xEF808080U}) {
    host::Picture other = grey(2, 2);
    other.pixels[3] = pixel;
    EXPECT_FALSE(compare(grey(2, 2), other, {15, 0}).matches) << std::hex << pixel;
    EXPECT_FALSE(compare(other, grey(2, 2), {15, 0}).matches) << std::hex << pixel;
  }
}

TEST(PictureComparison, OnlySoManyPixelsMayDiffer) {
  host::Picture other = grey(4, 3);
  other.pixels[1] = other.pixels[2] = 0xFF000000;
  EXPECT_TRUE(compare(grey(4, 3), other, {0, 2}).matches);
  EXPECT_FALSE(compare(grey(4, 3), other, {0, 1}).matches);
}

TEST(PictureComparison, TheDifferenceIsRedWhereThePicturesDiffer) {
  host::Picture other = grey(4, 3);
  other.pixels[7] = 0xFFFFFFFF;
  const Comparison result = compare(grey(4, 3), other);
  EXPECT_EQ(result.difference.pixels[7], 0xFFFF0000);
  EXPECT_EQ(result.difference.pixels[6], 0xFF202020);
}

}  // namespace
}  // namespace orvane::testing_pictures
