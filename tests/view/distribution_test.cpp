#include "view/distribution.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace orvane::detail {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

// What children that take all of their range are given.
std::vector<double> taken(const std::vector<LengthRange>& children, double available) {
  std::vector<double> lengths(children.size());
  distribute(children, available, [&](std::size_t child, double offer) {
    return lengths[child] = std::clamp(offer, children[child].min, children[child].max);
  });
  return lengths;
}

using Lengths = std::vector<double>;

TEST(Distribution, EvenPartsToTheEquallyFlexible) {
  EXPECT_EQ(taken({{0, 100}, {0, 100}}, 100), (Lengths{50, 50}));
  EXPECT_EQ(taken({{0, infinity}, {0, infinity}, {0, infinity}}, 90), (Lengths{30, 30, 30}));
}

TEST(Distribution, TheLeastFlexibleIsServedFirstAndTheRestSharesWhatItLeaves) {
  EXPECT_EQ(taken({{0, 100}, {20, 20}}, 100), (Lengths{80, 20}));
  EXPECT_EQ(taken({{0, infinity}, {0, 10}, {0, 30}}, 100), (Lengths{60, 10, 30}));
}

TEST(Distribution, FixedLengthsStickOutWhereThereIsTooLittle) {
  EXPECT_EQ(taken({{315, 315}, {360, 360}}, 400), (Lengths{315, 360}));
  EXPECT_EQ(taken({{315, 315}, {0, 50}}, 100), (Lengths{315, 0}));
}

TEST(Distribution, SpacersGetWhatIsLeftButAreSureOfTheirLeast) {
  const LengthRange spacer{8, infinity, true};
  EXPECT_EQ(taken({{0, 60}, spacer, {0, 30}}, 200), (Lengths{60, 110, 30}));
  EXPECT_EQ(taken({{0, 500}, spacer, {0, 30}}, 200), (Lengths{162, 8, 30}));
  EXPECT_EQ(taken({spacer, {0, 20}, spacer}, 100), (Lengths{40, 20, 40}));
}

TEST(Distribution, ALineBreakLeavesRoomThatLaterChildrenGet) {
  Lengths offers;
  const auto result = distribute({{0, 90}, {0, 100}}, 100, [&](std::size_t child, double offer) {
    offers.push_back(offer);
    return child == 0 ? 42.0 : offer;  // a text that breaks after a word
  });
  EXPECT_EQ(offers, (Lengths{50, 58}));
  EXPECT_EQ(result, (Lengths{50, 58}));
}

TEST(Distribution, EverybodyIsOfferedEverythingWhereThereIsNoEnd) {
  const auto result = distribute({{5, 10}, {0, infinity}, {1, infinity, true}}, infinity,
                                 [](std::size_t, double offer) { return std::min(offer, 10.0); });
  EXPECT_EQ(result, (Lengths{infinity, infinity, infinity}));
}

TEST(Distribution, NobodyAndNothing) {
  EXPECT_EQ(taken({}, 100), Lengths{});
  EXPECT_EQ(taken({{0, 50}, {0, 50}}, -30), (Lengths{0, 0}));
}

// At every length between the least and the most, nothing is lost and nothing is invented.
TEST(Distribution, GivesAwayExactlyWhatThereIs) {
  const std::vector<LengthRange> children{{10, 40}, {0, 25}, {5, 70}, {12, 12}};
  for (int available = 60; available <= 147; ++available) {
    const auto lengths = taken(children, available);
    double sum = 0;
    for (const double length : lengths) sum += length;
    EXPECT_NEAR(sum, available, 1e-9) << available;
  }
}

}  // namespace
}  // namespace orvane::detail
