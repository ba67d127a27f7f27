#include "linux/x11/window_area.h"

#include <gtest/gtest.h>

namespace orvane::host::x11 {
namespace {

TEST(WindowArea, LiesOnStepsOfItsOwn) {
  EXPECT_EQ(windowAreaFor({40, 40, 221, 100}, {0, 0, 1000, 600}), (PixelRect{32, 32, 240, 112}));
  EXPECT_EQ(windowAreaFor({32, 32, 240, 112}, {0, 0, 1000, 600}), (PixelRect{32, 32, 240, 112}));
}

TEST(WindowArea, EndsWhereTheScreenEnds) {
  EXPECT_EQ(windowAreaFor({900, 500, 100, 100}, {0, 0, 1001, 601}),
            (PixelRect{896, 496, 105, 105}));
}

}  // namespace
}  // namespace orvane::host::x11
