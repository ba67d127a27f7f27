#include "app/return_attempts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "fakes/manual_main_actor.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;
using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::Ge;
using testing::Le;
using testing::SizeIs;

class ReturnAttemptsTest : public testing::Test {
 protected:
  // When the attempts were made, since the loss.
  [[nodiscard]] std::vector<long> times() const {
    std::vector<long> times;
    for (const auto at : attempted_) {
      times.push_back(std::chrono::duration_cast<milliseconds>(at - lostAt_).count());
    }
    return times;
  }
  void stand() { attempts_.stands(); }
  void lose(bool isRefusal = false) {
    lostAt_ = actor_.elapsed();
    attempted_.clear();
    attempts_.lost(isRefusal);
  }

  fakes::ManualMainActor actor_;
  Duration lostAt_{0};
  std::vector<Duration> attempted_;
  std::vector<Duration> patiences_;
  bool isThere_ = false;
  Duration takes_{0};  // the time that an attempt keeps the loop
  bool sessionEnded_ = false;
  bool endsDuringAttempt_ = false;
  std::optional<ReturnAttempts::End> end_;
  int ends_ = 0;
  ReturnAttempts attempts_{actor_,
                           {},
                           {[this](Duration patience) {
                              attempted_.push_back(actor_.elapsed());
                              patiences_.push_back(patience);
                              if (takes_ > 0s) actor_.setWallClock(actor_.now() + 3);
                              if (endsDuringAttempt_) sessionEnded_ = true;
                              return isThere_;
                            },
                            [this] { return sessionEnded_; },
                            [this](ReturnAttempts::End end) {
                              end_ = end;
                              ++ends_;
                            }}};
};

TEST_F(ReturnAttemptsTest, NothingIsTriedWhileTheDesktopStands) {
  stand();
  actor_.advance(1h);
  EXPECT_THAT(attempted_, SizeIs(0));
  EXPECT_EQ(actor_.pendingTimers(), 0u);
}

TEST_F(ReturnAttemptsTest, DelaysDoubleUpToTheLongest) {
  stand();
  lose();
  actor_.advance(20s);
  EXPECT_THAT(times(), ElementsAre(250, 750, 1750, 3750, 7750, 11750, 15750, 19750));
}

TEST_F(ReturnAttemptsTest, IsGivenUpAtTheLimitAndNotAfterIt) {
  lose();
  actor_.advance(60s - 1ns);
  EXPECT_EQ(end_, std::nullopt);
  actor_.advance(1ns);
  EXPECT_EQ(end_, ReturnAttempts::End::limitPassed);
  const auto count = attempted_.size();
  actor_.advance(1h);
  EXPECT_EQ(attempted_.size(), count);
  EXPECT_EQ(ends_, 1);
  EXPECT_EQ(actor_.pendingTimers(), 0u);
}

TEST_F(ReturnAttemptsTest, SuccessInTheMiddleEndsTheWait) {
  lose();
  actor_.advance(2s);
  isThere_ = true;
  actor_.advance(2s);
  EXPECT_THAT(times(), ElementsAre(250, 750, 1750, 3750));
  actor_.advance(1h);
  EXPECT_THAT(attempted_, SizeIs(4));
  EXPECT_EQ(end_, std::nullopt);
}

TEST_F(ReturnAttemptsTest, ALossSoonAfterTheReturnWaitsLongerAndHasItsOwnLimit) {
  isThere_ = true;
  lose();
  actor_.advance(250ms);
  EXPECT_THAT(times(), ElementsAre(250));
  isThere_ = false;
  actor_.advance(9s);
  lose();
  actor_.advance(60s - 1ns);
  EXPECT_EQ(times().front(), 500);
  EXPECT_EQ(end_, std::nullopt);
  actor_.advance(1ns);
  EXPECT_EQ(end_, ReturnAttempts::End::limitPassed);
}

TEST_F(ReturnAttemptsTest, ADesktopThatHasSettledIsWaitedForAsAtFirst) {
  isThere_ = true;
  for (int loss = 0; loss < 20; ++loss) {
    lose();
    actor_.advance(250ms);
    EXPECT_THAT(times(), ElementsAre(250)) << loss;
    actor_.advance(10s);
  }
}

TEST_F(ReturnAttemptsTest, LossesInARowAreNeverTakenForTheEnd) {
  isThere_ = true;
  for (int loss = 0; loss < 100; ++loss) {
    lose();
    actor_.advance(4s);
    EXPECT_THAT(attempted_, SizeIs(1)) << loss;
  }
  EXPECT_EQ(times().front(), 4000);
  EXPECT_EQ(end_, std::nullopt);
}

TEST_F(ReturnAttemptsTest, TheThirdRefusalIsTheLast) {
  isThere_ = true;
  stand();
  lose(true);
  actor_.advance(4s);
  EXPECT_THAT(attempted_, SizeIs(1));
  lose(false);  // another loss in between changes nothing
  actor_.advance(4s);
  lose(true);
  actor_.advance(4s);
  EXPECT_EQ(end_, std::nullopt);
  lose(true);
  EXPECT_EQ(end_, ReturnAttempts::End::refused);
  actor_.advance(1h);
  EXPECT_THAT(attempted_, SizeIs(0));
  EXPECT_EQ(ends_, 1);
}

TEST_F(ReturnAttemptsTest, RefusalsFarApartAreForgiven) {
  isThere_ = true;
  for (int refusal = 0; refusal < 10; ++refusal) {
    lose(true);
    actor_.advance(61min);
  }
  EXPECT_EQ(end_, std::nullopt);
}

TEST_F(ReturnAttemptsTest, RefusalsEveryHalfHourAreNotMadeForEver) {
  isThere_ = true;
  for (int refusal = 0; refusal < 3; ++refusal) {
    EXPECT_EQ(end_, std::nullopt);
    lose(true);
    actor_.advance(30min);
  }
  EXPECT_EQ(end_, ReturnAttempts::End::refused);
}

TEST_F(ReturnAttemptsTest, BeforeItIsGivenUpItIsTriedOnceMore) {
  lose();
  actor_.advance(60s - 1ns);
  isThere_ = true;
  actor_.advance(1ns);
  EXPECT_EQ(end_, std::nullopt);
  EXPECT_EQ(times().back(), 60000);
  EXPECT_EQ(patiences_.back(), 500ms);
  actor_.advance(1h);
  EXPECT_EQ(actor_.pendingTimers(), 0u);
}

TEST_F(ReturnAttemptsTest, TheEndOfTheSessionEndsTheWaitWithinHalfASecond) {
  lose();
  actor_.advance(5s);
  sessionEnded_ = true;
  actor_.advance(500ms);
  EXPECT_EQ(end_, ReturnAttempts::End::sessionEnded);
  EXPECT_THAT(times(), ElementsAre(250, 750, 1750, 3750)) << "there is nothing to try";
  actor_.advance(1h);
  EXPECT_EQ(ends_, 1);
  EXPECT_EQ(actor_.pendingTimers(), 0u);
}

TEST_F(ReturnAttemptsTest, TheEndOfTheSessionDuringAnAttemptEndsTheWaitWithIt) {
  lose();
  endsDuringAttempt_ = true;
  actor_.advance(250ms);
  EXPECT_THAT(attempted_, SizeIs(1));
  EXPECT_EQ(end_, ReturnAttempts::End::sessionEnded);
  EXPECT_EQ(actor_.pendingTimers(), 0u);
}

TEST_F(ReturnAttemptsTest, TheSessionIsNotAskedForWhileTheDesktopStands) {
  lose();
  isThere_ = true;
  actor_.advance(1s);
  sessionEnded_ = true;
  actor_.advance(1h);
  EXPECT_EQ(end_, std::nullopt);
}

TEST_F(ReturnAttemptsTest, AnAttemptHasNoMoreTimeThanIsLeft) {
  lose();
  actor_.advance(58s);
  EXPECT_THAT(patiences_, Each(AllOf(Ge(2250ms), Le(10s))));
  patiences_.clear();
  actor_.advance(1900ms);
  EXPECT_THAT(patiences_, ElementsAre(500ms));
}

TEST_F(ReturnAttemptsTest, AttemptsBecomeMorePatientWithTheTime) {
  lose();
  actor_.advance(24s);
  EXPECT_THAT(patiences_, ElementsAre(3s, 3s, 3s, 3s, 3875ms, 5875ms, 7875ms, 9875ms, 10s));
}

TEST_F(ReturnAttemptsTest, AttemptsThatTakeTheirTimeLeaveLessForTheLastOnes) {
  takes_ = 3s;
  lose();
  actor_.advance(59s);
  EXPECT_EQ(patiences_.front(), 3s);
  EXPECT_EQ(patiences_.back(), 500ms);
}

TEST_F(ReturnAttemptsTest, AClockThatIsSetChangesNoBounds) {
  lose();
  actor_.setWallClock({0});
  actor_.advance(1s);
  actor_.setWallClock({1e12});
  actor_.advance(60s);
  for (const auto patience : patiences_) {
    EXPECT_GE(patience, 500ms);
    EXPECT_LE(patience, 10s);
  }
  EXPECT_EQ(end_, ReturnAttempts::End::limitPassed);
}

TEST_F(ReturnAttemptsTest, DestroyedWhileWaitingTheyAreSilent) {
  int tried = 0;
  {
    ReturnAttempts attempts(actor_, {},
                            {[&](Duration) { return ++tried > 0; }, [] { return false; },
                             [&](ReturnAttempts::End) { ++tried; }});
    attempts.lost(false);
  }
  actor_.advance(1h);
  EXPECT_EQ(tried, 0);
}

}  // namespace
}  // namespace orvane
