#include "linux/mainloop/end_limit.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

namespace orvane::host {
namespace {

using std::chrono::milliseconds;

constexpr std::chrono::hours kNever{1};
constexpr int kOther = 7;

class EndLimitDeathTest : public testing::Test {
 protected:
  void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

[[noreturn]] void hang() {
  EndLimit limit;
  limit.begin(milliseconds(1));
  while (true) ::pause();
}

[[noreturn]] void endInTime() {
  {
    EndLimit limit;
    limit.begin(kNever);
  }
  std::_Exit(kOther);
}

[[noreturn]] void endWithoutALimit() {
  { const EndLimit limit; }
  std::_Exit(kOther);
}

TEST_F(EndLimitDeathTest, WhatHangsIsNotWaitedForLonger) {
  EXPECT_EXIT(hang(), testing::ExitedWithCode(EXIT_SUCCESS), "^orvane: .*may not be saved.\n$");
}

TEST_F(EndLimitDeathTest, WhatEndsInTimeIsLeftAlone) {
  EXPECT_EXIT(endInTime(), testing::ExitedWithCode(kOther), "^$");
  EXPECT_EXIT(endWithoutALimit(), testing::ExitedWithCode(kOther), "^$");
}

}  // namespace
}  // namespace orvane::host
