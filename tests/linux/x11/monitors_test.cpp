#include "linux/x11/monitors.h"

#include <gtest/gtest.h>

namespace orvane::host::x11 {
namespace {

Monitor monitor(const std::string& connector, const PixelRect& frame, bool isPrimary = false) {
  return {connector, {"DEL", "U2720Q"}, frame, isPrimary};
}

// The published test vectors of the hash, through its formula over "DP-1\0DEL\0U2720Q\0".
TEST(ScreenNumber, IsStable) {
  std::uint32_t hash = 2166136261U;
  for (const char byte : std::string("DP-1\0DEL\0U2720Q\0", 16)) {
    hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619U;
  }
  EXPECT_EQ(screenNumber(monitor("DP-1", {})), hash & 0x7fffffffU);
}

TEST(ScreenNumber, DoesNotDependOnPlaceOrRank) {
  EXPECT_EQ(screenNumber(monitor("DP-1", {0, 0, 1920, 1080}, true)),
            screenNumber(monitor("DP-1", {1920, 0, 1280, 720})));
}

TEST(ScreenNumber, TellsConnectorsAndModelsApart) {
  auto other = monitor("DP-1", {});
  other.model.model = "U2721Q";
  EXPECT_NE(screenNumber(monitor("DP-1", {})), screenNumber(monitor("DP-2", {})));
  EXPECT_NE(screenNumber(monitor("DP-1", {})), screenNumber(other));
}

TEST(ScreenNumber, IsAbsentWithoutAConnector) { EXPECT_FALSE(screenNumber(monitor("", {}))); }

const PixelRect wide{0, 0, 2560, 1440};
const PixelRect beside{2560, 0, 1920, 1080};

TEST(WithoutMirrors, KeepsThoseThatLieSideBySideOrOverlapInPart) {
  const std::vector<Monitor> all{monitor("A", wide, true), monitor("B", beside),
                                 monitor("C", {1000, 1000, 2000, 2000})};
  EXPECT_EQ(withoutMirrors(all), all);
  EXPECT_EQ(withoutMirrors({}), std::vector<Monitor>());
}

TEST(WithoutMirrors, KeepsTheFirstOfThoseThatShowTheSame) {
  EXPECT_EQ(withoutMirrors({monitor("B", wide), monitor("A", wide), monitor("C", wide)}),
            std::vector{monitor("B", wide)});
}

TEST(WithoutMirrors, DropsWhatLiesWithinAnotherInWhateverOrder) {
  const auto large = monitor("A", wide, true);
  const auto small = monitor("B", {0, 0, 1920, 1080});
  const auto smaller = monitor("C", {640, 360, 1280, 720});
  EXPECT_EQ(withoutMirrors({large, small, smaller}), std::vector{large});
  EXPECT_EQ(withoutMirrors({smaller, small, large}), std::vector{large});
  EXPECT_EQ(withoutMirrors({small, monitor("D", beside), large}),
            (std::vector{monitor("D", beside), large}));
}

TEST(WithoutMirrors, MakesPrimaryWhatShowsThePrimaryOne) {
  EXPECT_EQ(withoutMirrors({monitor("D", beside), monitor("A", wide),
                            monitor("B", {640, 360, 1280, 720}, true)}),
            (std::vector{monitor("D", beside), monitor("A", wide, true)}));
  EXPECT_EQ(withoutMirrors({monitor("A", wide), monitor("B", wide, true)}),
            std::vector{monitor("A", wide, true)});
}

TEST(MainMonitor, IsThePrimaryOne) {
  EXPECT_EQ(mainMonitor({monitor("A", {0, 0, 10, 10}), monitor("B", {10, 0, 10, 10}, true)}), 1U);
}

TEST(MainMonitor, IsElseTheOneNearestToTheOrigin) {
  EXPECT_EQ(mainMonitor({monitor("A", {100, 0, 10, 10}), monitor("B", {0, 50, 10, 10}),
                         monitor("C", {0, 60, 10, 10})}),
            1U);
}

TEST(MainMonitor, IsOfEquallyNearOnesTheFirstByName) {
  EXPECT_EQ(mainMonitor({monitor("B", {10, 0, 10, 10}), monitor("A", {0, 10, 10, 10})}), 1U);
}

TEST(MainMonitor, IsAbsentWithoutMonitors) { EXPECT_FALSE(mainMonitor({})); }

TEST(Screen, HasItsFrameInPoints) {
  const auto screen = screenOf(monitor("DP-1", {3840, 0, 2560, 1440}), 1.25, std::nullopt);
  EXPECT_EQ(screen.frame, (Rect{3072, 0, 2048, 1152}));
  EXPECT_EQ(screen.visibleFrame, screen.frame);
  EXPECT_EQ(screen.identity, "DP-1");
}

TEST(Screen, IsVisibleWherePanelsLeaveItFree) {
  const PixelRect workArea{0, 30, 3840, 1050};
  const auto left = screenOf(monitor("L", {0, 0, 1920, 1080}), 1, workArea);
  const auto right = screenOf(monitor("R", {1920, 0, 1920, 1080}), 2, workArea);
  EXPECT_EQ(left.visibleFrame, (Rect{0, 30, 1920, 1050}));
  EXPECT_EQ(right.visibleFrame, (Rect{960, 15, 960, 525}));
}

TEST(Screen, IsWhollyVisibleWhereTheWorkAreaMissesIt) {
  const auto screen = screenOf(monitor("R", {1920, 0, 1920, 1080}), 1, PixelRect{0, 0, 1920, 1080});
  EXPECT_EQ(screen.visibleFrame, screen.frame);
}

}  // namespace
}  // namespace orvane::host::x11
