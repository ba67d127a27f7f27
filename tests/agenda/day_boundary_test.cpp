#include "agenda/day_boundary.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>

#include "fakes/fixed_calendar.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;

TEST(WholeNanoseconds, TruncatesAndStopsShortOfWhatAClockCanAdd) {
  EXPECT_EQ(wholeNanoseconds(0), 0ns);
  EXPECT_EQ(wholeNanoseconds(60), 60s);
  EXPECT_EQ(wholeNanoseconds(0.0000000019), 1ns);
  EXPECT_EQ(wholeNanoseconds(1.5e10), Duration(1LL << 62));
}

TEST(WholeNanosecondsDeathTest, WhatCannotBeCountedStopsTheProcess) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  for (const double delay : {-1.0, infinity, -infinity, std::nan(""), 18446744073.709551616}) {
    EXPECT_DEATH(static_cast<void>(wholeNanoseconds(delay)), "nanoseconds") << delay;
  }
}

TEST(DelayUntilNextDay, IsTruncatedToNanosecondsBetweenTheSeconds) {
  const fakes::FixedCalendar calendar([] { return Date{0}; });
  EXPECT_EQ(delayUntilNextDay(calendar, {86'400 * 3 + 0.5}), 24h + 1500ms);
}

TEST(DelayUntilNextDay, FollowsTheLocalMidnight) {
  const fakes::FixedCalendar calendar([] { return Date{0}; }, 5.5 * 3600);
  EXPECT_EQ(delayUntilNextDay(calendar, {0}), 18h + 30min + 2s);
}

TEST(DelayUntilNextDay, FollowsAMidnightThatDoesNotExist) {
  fakes::FixedCalendar calendar([] { return Date{0}; });
  calendar.changeOffset({86'400}, 3600);  // the second day begins at one o'clock
  EXPECT_EQ(delayUntilNextDay(calendar, {0}), 24h + 2s);
  EXPECT_EQ(delayUntilNextDay(calendar, {86'400}), 24h + 2s);
}

}  // namespace
}  // namespace orvane
