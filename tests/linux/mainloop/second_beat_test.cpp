#include "linux/mainloop/second_beat.h"

#include <gtest/gtest.h>

namespace orvane::host {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

class SecondBeatTest : public testing::Test {
 protected:
  static SecondBeat::Time at(int second, int millisecond = 0) {
    return seconds(second) + milliseconds(millisecond);
  }
  SecondBeat beat;
};

TEST_F(SecondBeatTest, WakesAtTheNextWholeSecond) {
  EXPECT_EQ(beat.start(at(10, 250)), at(11));
  EXPECT_EQ(beat.start(at(10)), at(11));
  EXPECT_EQ(beat.start(at(-1, -500)), at(-1));
}

TEST_F(SecondBeatTest, AnnouncesTheScheduledSecondAndNotTheTimeOfTheCall) {
  beat.start(at(10, 250));
  for (int second = 11; second < 20; ++second) {
    const auto [tick, next] = beat.reached(at(second, second * 49));
    EXPECT_EQ(tick, seconds(second));
    EXPECT_EQ(next, at(second + 1));
  }
}

TEST_F(SecondBeatTest, AnEarlyTimerStillAnnouncesTheSecondItWasFor) {
  beat.start(at(10, 250));
  const auto [tick, next] = beat.reached(at(10, 999));
  EXPECT_EQ(tick, seconds(11));
  EXPECT_EQ(next, at(12));
}

TEST_F(SecondBeatTest, LateByASecondOrMoreItSkipsToTheSecondThatItIsNow) {
  beat.start(at(10, 250));
  auto woken = beat.reached(at(3610, 700));
  EXPECT_EQ(woken.tick, seconds(3610));
  EXPECT_EQ(woken.next, at(3611));
  woken = beat.reached(at(3611, 1));
  EXPECT_EQ(woken.tick, seconds(3611));
}

TEST_F(SecondBeatTest, ASetClockTicksAtOnceWithTheNewTime) {
  beat.start(at(1000));
  beat.reached(at(1001));
  auto jump = beat.clockChanged(at(5000, 300));
  EXPECT_EQ(jump.tick, seconds(5000));
  EXPECT_EQ(jump.next, at(5001));
  jump = beat.clockChanged(at(200, 900));
  EXPECT_EQ(jump.tick, seconds(200));
  EXPECT_EQ(jump.next, at(201));
}

TEST_F(SecondBeatTest, AClockSetWithinTheSecondRepeatsNothing) {
  beat.start(at(10));
  beat.reached(at(11));
  const auto [tick, next] = beat.clockChanged(at(11, 800));
  EXPECT_EQ(tick, std::nullopt);
  EXPECT_EQ(next, at(12));
  EXPECT_EQ(beat.reached(at(12)).tick, seconds(12));
}

TEST_F(SecondBeatTest, AClockThatWentBackUnnoticedIsFollowed) {
  beat.start(at(100));
  const auto [tick, next] = beat.reached(at(40, 500));
  EXPECT_EQ(tick, seconds(40));
  EXPECT_EQ(next, at(41));
}

TEST_F(SecondBeatTest, StartingAnewForgetsWhatWasAnnounced) {
  beat.start(at(10));
  beat.reached(at(11));
  beat.start(at(10, 500));
  EXPECT_EQ(beat.reached(at(11)).tick, seconds(11));
}

}  // namespace
}  // namespace orvane::host
