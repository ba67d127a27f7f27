#include "linux/mainloop/periodic_schedule.h"

#include <gmock/gmock.h>

#include <cmath>
#include <string>
#include <vector>

#include "fake_wall_timer.h"
#include "linux/mainloop/clocks.h"
#include "linux/mainloop/main_loop.h"

namespace orvane::host {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

class PeriodicScheduleTest : public testing::Test {
 protected:
  Subscription listen(std::vector<double>& ticks) {
    return schedule->everySecond([&ticks](Date date) { ticks.push_back(date.secondsSince1970); });
  }
  FakeWallClock clock{seconds(1000) + milliseconds(400)};
  std::unique_ptr<PeriodicSchedule> schedule = makePeriodicSchedule(clock.makeTimer());
};

TEST_F(PeriodicScheduleTest, TicksOnWholeSeconds) {
  std::vector<double> ticks;
  const auto subscription = listen(ticks);
  EXPECT_THAT(ticks, IsEmpty());
  clock.advance(milliseconds(599));
  EXPECT_THAT(ticks, IsEmpty());
  clock.advance(milliseconds(2401));
  EXPECT_THAT(ticks, ElementsAre(1001, 1002, 1003));
}

TEST_F(PeriodicScheduleTest, NeedsNoTimerWhileNobodyListens) {
  EXPECT_EQ(clock.armedFor(), std::nullopt);
  std::vector<double> ticks;
  auto first = listen(ticks);
  auto second = listen(ticks);
  EXPECT_EQ(clock.armedFor(), seconds(1001));
  first.cancel();
  EXPECT_EQ(clock.armedFor(), seconds(1001));
  second.cancel();
  EXPECT_EQ(clock.armedFor(), std::nullopt);
}

TEST_F(PeriodicScheduleTest, AllListenersShareOneWakeUpInTheirOrder) {
  std::vector<std::string> calls;
  const auto first = schedule->everySecond([&](Date) { calls.emplace_back("first"); });
  const auto second = schedule->everySecond([&](Date) { calls.emplace_back("second"); });
  clock.advance(seconds(1));
  EXPECT_THAT(calls, ElementsAre("first", "second"));
}

TEST_F(PeriodicScheduleTest, AStoppedProcessGoesOnWithTheSecondThatItIs) {
  std::vector<double> ticks;
  const auto subscription = listen(ticks);
  clock.advance(seconds(1));
  clock.stall(seconds(3600));
  EXPECT_THAT(ticks, ElementsAre(1001, 4601));
  clock.advance(seconds(1));
  EXPECT_THAT(ticks, ElementsAre(1001, 4601, 4602));
}

TEST_F(PeriodicScheduleTest, ASetClockTicksAtOnceAndGoesOnFromThere) {
  std::vector<double> ticks;
  const auto subscription = listen(ticks);
  clock.set(seconds(50) + milliseconds(900));
  EXPECT_THAT(ticks, ElementsAre(50));
  clock.advance(milliseconds(100));
  EXPECT_THAT(ticks, ElementsAre(50, 51));
}

TEST_F(PeriodicScheduleTest, AListenerMayLeaveInsideATick) {
  Subscription subscription;
  int ticks = 0;
  subscription = schedule->everySecond([&](Date) {
    ++ticks;
    subscription.cancel();
  });
  clock.advance(seconds(5));
  EXPECT_EQ(ticks, 1);
  EXPECT_EQ(clock.armedFor(), std::nullopt);
}

TEST_F(PeriodicScheduleTest, AListenerThatComesInsideATickHearsOfTheNext) {
  std::vector<double> late;
  Subscription second;
  const auto first = schedule->everySecond([&](Date) {
    if (!second) second = listen(late);
  });
  clock.advance(seconds(2));
  EXPECT_THAT(late, ElementsAre(1002));
}

TEST_F(PeriodicScheduleTest, ASubscriptionMayOutliveTheSchedule) {
  std::vector<double> ticks;
  auto subscription = listen(ticks);
  schedule.reset();
  clock.advance(seconds(3));
  subscription.cancel();
  EXPECT_THAT(ticks, IsEmpty());
}

TEST(RealPeriodicSchedule, TicksWithWholeSecondsNearTheirTime) {
  const auto loop = makeMainLoop();
  const auto schedule = makePeriodicSchedule();
  std::vector<double> ticks;
  std::vector<double> lateness;
  const auto subscription = schedule->everySecond([&](Date date) {
    ticks.push_back(date.secondsSince1970);
    lateness.push_back(loop->now() - date);
    if (ticks.size() == 2) loop->quit(0);
  });
  EXPECT_EQ(loop->run(), 0);
  ASSERT_EQ(ticks.size(), 2);
  for (std::size_t i = 0; i < ticks.size(); ++i) {
    EXPECT_EQ(ticks[i], std::floor(ticks[i]));
    // Never announced ahead of time, and never as a second that has passed.
    EXPECT_GE(lateness[i], -0.02);
    EXPECT_LT(lateness[i], 1.0);
  }
  EXPECT_GT(ticks[1], ticks[0]);
}

}  // namespace
}  // namespace orvane::host
