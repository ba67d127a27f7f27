#include "view/measuring_cache.h"

#include <gtest/gtest.h>

#include "fakes/cell_measurer.h"

namespace orvane {
namespace {

TEST(MeasuringCache, AsksOnceForEachTextStyleAndWidth) {
  fakes::CellMeasurer measurer;
  const MeasuringCache cache(measurer);
  const TextStyle style{{10}, false, 1};
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(cache.measure("abc", style, 100).size.width, 15);
  }
  EXPECT_EQ(measurer.measured(), 1);
}

TEST(MeasuringCache, EveryPartOfTheQuestionCounts) {
  fakes::CellMeasurer measurer;
  const MeasuringCache cache(measurer);
  const TextStyle style{{10}, false, 1};
  int expected = 0;
  const auto isNew = [&](const std::string& text, const TextStyle& asked, double width) {
    (void)cache.measure(text, asked, width);
    return measurer.measured() == ++expected;
  };
  EXPECT_TRUE(isNew("abc", style, 100));
  EXPECT_TRUE(isNew("abd", style, 100));
  EXPECT_TRUE(isNew("abc", style, 101));
  EXPECT_TRUE(isNew("abc", {{11}, false, 1}, 100));
  EXPECT_TRUE(isNew("abc", {{10, FontWeight::bold}, false, 1}, 100));
  EXPECT_TRUE(isNew("abc", {{10, FontWeight::regular, FontDesign::rounded}, false, 1}, 100));
  EXPECT_TRUE(isNew("abc", {{10, FontWeight::regular, FontDesign::standard, true}, false, 1}, 100));
  EXPECT_TRUE(isNew("abc", {{10}, true, 1}, 100));
  EXPECT_TRUE(isNew("abc", {{10}, false, 2}, 100));
}

TEST(MeasuringCache, HoldsNoMoreThanItsCapacity) {
  fakes::CellMeasurer measurer;
  const MeasuringCache cache(measurer, 8);
  for (int index = 0; index < 100; ++index) {
    (void)cache.measure(std::to_string(index), {}, 100);
  }
  const int measured = measurer.measured();
  (void)cache.measure("0", {}, 100);
  EXPECT_EQ(measurer.measured(), measured + 1);
}

TEST(MeasuringCache, AdvancesOfDigitsAndOfCharactersAreKeptApart) {
  fakes::CellMeasurer measurer;
  const MeasuringCache cache(measurer);
  EXPECT_EQ(cache.digitAdvance({10}), 6);
  EXPECT_EQ(cache.advance(':', {10}), 5);
  EXPECT_EQ(cache.advance(':', {20}), 10);
  EXPECT_EQ(cache.digitAdvance({10}), 6);
}

}  // namespace
}  // namespace orvane
