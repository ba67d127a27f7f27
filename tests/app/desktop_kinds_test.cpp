#include "app/desktop_kinds.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/manual_main_actor.h"
#include "fakes/memory_window_server.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

// A good kind of desktop and one that serves as well.
class DesktopKindsTest : public testing::Test {
 protected:
  struct Desktop {
    bool isNamed = true;
    bool isThere = true;
  };
  DesktopKinds::Kind kind(const std::string& name, const Desktop& desktop) {
    return {[&desktop] { return desktop.isNamed; },
            [this, name, &desktop](const auto& attempt) -> ReturningDesktop::Opened {
              tried_.push_back(name);
              lose_ = attempt.onLost;
              if (!desktop.isThere) return {nullptr, {"No " + name + "."}};
              return {std::make_unique<fakes::MemoryWindowServer>(), {}};
            }};
  }
  ReturningDesktop::Opened open(bool isForTheSame = false) {
    tried_.clear();
    return kinds_.open({1s, {}, {}, isForTheSame});
  }

  Desktop good_;
  Desktop other_;
  std::vector<std::string> tried_;
  std::function<void(const DesktopLoss&)> lose_;
  DesktopKinds kinds_{{kind("good", good_), kind("other", other_)}, "Nothing is named."};
};

TEST_F(DesktopKindsTest, TheBestThatIsThereIsOpened) {
  EXPECT_NE(open().server, nullptr);
  EXPECT_THAT(tried_, ElementsAre("good"));
  good_.isThere = false;
  EXPECT_NE(open().server, nullptr);
  EXPECT_THAT(tried_, ElementsAre("good", "other"));
}

TEST_F(DesktopKindsTest, WhyThereIsNoneIsToldOfEach) {
  good_.isThere = other_.isThere = false;
  EXPECT_THAT(open().failures, ElementsAre("No good.", "No other."));
}

TEST_F(DesktopKindsTest, WhatIsNotNamedIsNotTried) {
  good_.isNamed = false;
  EXPECT_NE(open().server, nullptr);
  EXPECT_THAT(tried_, ElementsAre("other"));
  other_.isNamed = false;
  EXPECT_THAT(open().failures, ElementsAre("Nothing is named."));
  EXPECT_THAT(tried_, IsEmpty());
}

TEST_F(DesktopKindsTest, ForTheSameAgainOthersAreLeftAlone) {
  EXPECT_NE(open().server, nullptr);
  good_.isThere = false;
  EXPECT_EQ(open(true).server, nullptr);
  EXPECT_THAT(tried_, ElementsAre("good"));
  EXPECT_NE(open(false).server, nullptr);
  good_.isThere = true;
  EXPECT_NE(open(true).server, nullptr);
  EXPECT_THAT(tried_, ElementsAre("other")) << "which was the last";
}

TEST_F(DesktopKindsTest, ForTheSameAgainWhereThereWasNoneAnyIsGood) {
  good_.isThere = false;
  EXPECT_NE(open(true).server, nullptr);
  EXPECT_THAT(tried_, ElementsAre("good", "other"));
}

// A compositor that takes its time, beside an X server that stands all along.
TEST_F(DesktopKindsTest, ASlowReturnDoesNotMoveTheBoardElsewhere) {
  fakes::ManualMainActor actor;
  NotificationCenter center;
  ReturningDesktop desktop({actor, center,
                            [this](const auto& attempt) { return kinds_.open(attempt); },
                            [] { return false; }, [](const auto&) {}});
  ASSERT_THAT(desktop.open(1s), IsEmpty());
  good_.isThere = false;
  lose_({"The display is lost", false});
  tried_.clear();
  actor.advance(15s);
  EXPECT_THAT(tried_, testing::AllOf(testing::Contains("good"), testing::Each("good")));
  good_.isThere = true;
  actor.advance(4s);
  EXPECT_EQ(tried_.back(), "good");
  // And one that is gone for good makes place for another.
  good_.isThere = false;
  lose_({"The display is lost", false});
  actor.advance(25s);
  EXPECT_EQ(tried_.back(), "other");
}

}  // namespace
}  // namespace orvane
