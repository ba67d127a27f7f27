#include "linux/statusitem/status_icon.h"

#include <gtest/gtest.h>

#include "linux/paint/fonts.h"
#include "linux/paint/painter.h"

namespace orvane::host::statusitem {
namespace {

struct Extent {
  int left = 1000, right = -1, top = 1000, bottom = -1;
  int brightest = 0;
};

// Where the picture has ink that can be seen.
Extent extentOf(const IconPixels& icon) {
  Extent extent;
  for (int y = 0; y < icon.side; ++y) {
    for (int x = 0; x < icon.side; ++x) {
      const auto* pixel = &icon.argb.at(static_cast<std::size_t>(y * icon.side + x) * 4);
      if (pixel[0] < 20) continue;
      extent.left = std::min(extent.left, x);
      extent.right = std::max(extent.right, x);
      extent.top = std::min(extent.top, y);
      extent.bottom = std::max(extent.bottom, y);
      if (pixel[0] > 200) extent.brightest = std::max<int>(extent.brightest, pixel[1]);
    }
  }
  return extent;
}

TEST(StatusIconTest, TheTimerFillsEverySizeAndIsCentred) {
  const auto painter = makePainter(makeTypesetter());
  const auto icons = symbolPixels("timer", *painter);
  ASSERT_EQ(icons.size(), 5U);
  for (const auto& icon : icons) {
    ASSERT_EQ(icon.argb.size(), static_cast<std::size_t>(icon.side) * icon.side * 4);
    const auto ink = extentOf(icon);
    EXPECT_GT(ink.bottom - ink.top, icon.side * 0.7) << icon.side;
    EXPECT_NEAR(ink.left, icon.side - 1 - ink.right, 2) << icon.side;
    EXPECT_NEAR(ink.top, icon.side - 1 - ink.bottom, 3) << icon.side;
    EXPECT_GT(ink.brightest, 200) << icon.side;
  }
}

TEST(StatusIconTest, TellsSymbolsFromOtherNames) {
  EXPECT_TRUE(hasSymbol("timer"));
  EXPECT_FALSE(hasSymbol("no.such.symbol"));
  EXPECT_FALSE(hasSymbol(""));
}

}  // namespace
}  // namespace orvane::host::statusitem
