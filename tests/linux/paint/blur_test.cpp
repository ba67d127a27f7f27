#include "linux/paint/blur.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace orvane::host {
namespace {

Coverage dotInTheMiddle(int size, int dot) {
  Coverage coverage{size, size, std::vector<std::uint8_t>(static_cast<std::size_t>(size * size))};
  for (int y = (size - dot) / 2; y < (size + dot) / 2; ++y)
    for (int x = (size - dot) / 2; x < (size + dot) / 2; ++x) coverage.values[y * size + x] = 255;
  return coverage;
}

TEST(Blur, ReachesAsFarAsTheRadiusAndNoFarther) {
  for (const int radius : {1, 2, 3, 4, 7, 10}) {
    Coverage picture = dotInTheMiddle(81, 41);  // from 20 to 61
    blur(picture, radius);
    const auto at = [&](int x) { return int{picture.values[40 * 81 + x]}; };
    EXPECT_EQ(at(20 - radius - 1), 0) << radius;
    EXPECT_GT(at(19), 0) << radius;
    EXPECT_EQ(at(20 + radius), 255) << radius;
    EXPECT_LT(at(20), 255) << radius;
  }
}

TEST(Blur, FallsOffSteadilyAndEquallyOnAllSides) {
  Coverage picture = dotInTheMiddle(80, 40);
  blur(picture, 12);
  for (int i = 1; i < 40; ++i)
    EXPECT_GE(picture.values[40 * 80 + i], picture.values[40 * 80 + i - 1]);
  for (int i = 0; i < 80; ++i) {
    EXPECT_EQ(picture.values[40 * 80 + i], picture.values[40 * 80 + 79 - i]) << i;
    EXPECT_NEAR(picture.values[40 * 80 + i], picture.values[i * 80 + 40], 1) << i;
  }
}

TEST(Blur, ARadiusOfZeroChangesNothing) {
  Coverage picture = dotInTheMiddle(9, 3);
  const auto before = picture.values;
  blur(picture, 0);
  EXPECT_EQ(picture.values, before);
}

TEST(Blur, ARadiusBeyondThePictureIsFine) {
  Coverage picture = dotInTheMiddle(9, 3);
  blur(picture, 200);
  for (const auto value : picture.values) EXPECT_LE(value, 3);
}

}  // namespace
}  // namespace orvane::host
