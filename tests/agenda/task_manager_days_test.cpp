// The refresh at each day boundary, in virtual time.
#include "agenda/task_manager_fixture.h"

namespace orvane {
namespace {

class DayBoundary : public TaskManagerTest {
 protected:
  // The sleep of the day-boundary loop is the only one of a manager at rest.
  Duration sleepAt(Date now) {
    actor_.setWallClock(now);
    manager().start();
    actor_.runUntilIdle();
    EXPECT_EQ(actor_.pendingTimers(), 1u);
    return actor_.nextTimerIn();
  }
};

TEST_F(DayBoundary, AtNoonTheLoopSleepsTwelveHoursAndTwoSeconds) {
  EXPECT_EQ(sleepAt(at(20, 12)), 12h + 2s);
}

TEST_F(DayBoundary, JustBeforeMidnightTheLoopSleepsAMinute) {
  EXPECT_EQ(sleepAt(at(20, 23, 59, 30)), 60s);
}

TEST_F(DayBoundary, TheFloorBeginsAfterTwoSecondsToTheMinute) {
  EXPECT_EQ(sleepAt(at(20, 23, 59, 2)), 60s);
  EXPECT_EQ(sleepAt(at(20, 23, 59, 1)), 61s);
}

TEST_F(DayBoundary, ADayOfTwentyThreeHoursIsFollowed) {
  calendar_.changeOffset(at(20, 2), 3600);
  EXPECT_EQ(sleepAt(at(20, 0)), 23h + 2s);
}

TEST_F(DayBoundary, ADayOfTwentyFiveHoursIsFollowed) {
  calendar_.changeOffset(at(20, 2), -3600);
  EXPECT_EQ(sleepAt(at(20, 0)), 25h + 2s);
}

TEST_F(DayBoundary, WithoutANextMidnightADayIsTwentyFourHours) {
  calendar_.setCannotAddDays(true);
  EXPECT_EQ(sleepAt(at(20, 15)), 24h + 2s);
}

TEST_F(DayBoundary, EachDayIsRefreshedTwoSecondsAfterMidnight) {
  manager().start();
  actor_.runUntilIdle();
  EXPECT_EQ(refreshes(), 1);
  actor_.advance(12h + 1s);
  EXPECT_EQ(refreshes(), 1);
  actor_.advance(1s);
  EXPECT_EQ(refreshes(), 2);
  EXPECT_EQ(*manager().lastRefreshDate, at(21, 0, 0, 2));
  actor_.advance(24h);
  EXPECT_EQ(refreshes(), 3);
  EXPECT_EQ(*manager().lastRefreshDate, at(22, 0, 0, 2));
}

TEST_F(DayBoundary, TheLoopNeitherCancelsNorIsCancelledByScheduledRefreshes) {
  manager().start();
  actor_.advance(12h + 1900ms);
  manager().scheduleRefresh();
  actor_.advance(100ms);
  EXPECT_EQ(refreshes(), 2);
  actor_.advance(150ms);
  EXPECT_EQ(refreshes(), 3);
}

TEST_F(DayBoundary, StartingAgainReplacesTheLoop) {
  manager().start();
  actor_.runUntilIdle();
  manager().start();
  actor_.runUntilIdle();
  EXPECT_EQ(actor_.pendingTimers(), 1u);
  EXPECT_EQ(refreshes(), 2);
  actor_.advance(12h + 2s);
  EXPECT_EQ(refreshes(), 3);
}

TEST_F(DayBoundary, ReleasingTheManagerEndsTheLoop) {
  manager().start();
  actor_.runUntilIdle();
  manager_.reset();
  actor_.runUntilIdle();
  EXPECT_EQ(actor_.tasks().size(), 0u);
  EXPECT_EQ(actor_.pendingTimers(), 0u);
}

}  // namespace
}  // namespace orvane
