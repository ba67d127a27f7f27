#include "linux/calendars/change_burst.h"

#include <gtest/gtest.h>

#include <chrono>

#include "fakes/manual_main_actor.h"

namespace orvane::host {
namespace {

using std::chrono::milliseconds;

class ChangeBurstTest : public testing::Test {
 protected:
  fakes::ManualMainActor actor;
  int looks = 0;
  int announcements = 0;
  ChangeBurst burst{actor, [this] { ++looks; }, [this] { ++announcements; }};
};

TEST_F(ChangeBurstTest, LooksOnceAfterTheLastChange) {
  for (int i = 0; i < 10; ++i) {
    burst.signal();
    actor.advance(milliseconds(30));
  }
  EXPECT_EQ(looks, 0);
  actor.advance(milliseconds(10));
  EXPECT_EQ(looks, 1);
}

TEST_F(ChangeBurstTest, AnnouncesWhatTheLookFound) {
  burst.signal();
  actor.advance(milliseconds(50));
  EXPECT_EQ(announcements, 0);
  burst.looked(true, false);
  EXPECT_EQ(announcements, 1);
  actor.advance(milliseconds(1000));
  EXPECT_EQ(announcements, 1);
}

TEST_F(ChangeBurstTest, AnnouncesNothingWhenNothingWasFound) {
  burst.signal();
  actor.advance(milliseconds(50));
  burst.looked(false, false);
  actor.advance(milliseconds(1000));
  EXPECT_EQ(announcements, 0);
}

TEST_F(ChangeBurstTest, AnnouncesWithinATenthOfASecondEvenWhenTheLookTakesLonger) {
  burst.signal();
  actor.advance(milliseconds(100));
  EXPECT_EQ(announcements, 1);
  burst.looked(true, false);
  EXPECT_EQ(announcements, 1);
}

TEST_F(ChangeBurstTest, AnnouncesAnUrgentFindOnceMore) {
  burst.signal();
  actor.advance(milliseconds(100));
  burst.looked(true, true);
  EXPECT_EQ(announcements, 2);
}

TEST_F(ChangeBurstTest, LooksAgainForChangesDuringALook) {
  burst.signal();
  actor.advance(milliseconds(40));
  burst.signal();
  actor.advance(milliseconds(41));
  EXPECT_EQ(looks, 1);
  burst.looked(true, false);
  EXPECT_EQ(looks, 2);
  EXPECT_EQ(announcements, 0);
  burst.looked(false, false);
  EXPECT_EQ(announcements, 1);
}

TEST_F(ChangeBurstTest, ABurstWithoutEndIsAnnouncedInBetween) {
  for (int i = 0; i < 250; ++i) {
    burst.signal();
    actor.advance(milliseconds(10));
  }
  EXPECT_EQ(looks, 1);
  EXPECT_EQ(announcements, 1);
}

TEST_F(ChangeBurstTest, NothingHappensOnceStopped) {
  burst.signal();
  burst.stop();
  actor.advance(milliseconds(5000));
  EXPECT_EQ(looks + announcements, 0);
}

}  // namespace
}  // namespace orvane::host
