#include "linux/wayland/missing_pixels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvane::host::wayland {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(MissingPixelsTest, KeepsRectanglesOnce) {
  MissingPixels missing;
  missing.add(PixelRect{0, 0, 10, 10});
  missing.add(PixelRect{2, 2, 3, 3});
  missing.add(PixelRect{0, 0, 10, 10});
  EXPECT_THAT(missing.rects(), ElementsAre(PixelRect{0, 0, 10, 10}));
  missing.add(PixelRect{0, 0, 20, 20});
  EXPECT_THAT(missing.rects(), ElementsAre(PixelRect{0, 0, 20, 20}));
}

TEST(MissingPixelsTest, KnowsNoEmptyRectangles) {
  MissingPixels missing;
  missing.add(PixelRect{5, 5, 0, 10});
  EXPECT_THAT(missing.rects(), IsEmpty());
}

TEST(MissingPixelsTest, StaysShort) {
  MissingPixels missing;
  for (int i = 0; i < 1000; ++i) missing.add(PixelRect{20 * i, 0, 10, 10});
  EXPECT_LE(missing.rects().size(), 24U);
  int right = 0;
  for (const auto& rect : missing.rects()) right = std::max(right, rect.x + rect.width);
  EXPECT_EQ(right, 19990);
}

}  // namespace
}  // namespace orvane::host::wayland
