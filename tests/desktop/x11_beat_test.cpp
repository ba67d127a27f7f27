// When and what the windows paint, seen from the server's side on Xfce. These tests measure time,
// so they run alone.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <csignal>

#include "x11_probe_board.h"
#include "x11_program.h"
#include "x11_xfce.h"

namespace orvane::desktop_test {
namespace {

class BeatOnXfce : public OnXfce {};

INSTANTIATE_TEST_SUITE_P(Compositing, BeatOnXfce, testing::Bool(), compositingName);

TEST_P(BeatOnXfce, ChangeIsDrawnWithTheNextFrameAndNotTheNextBeat) {
  Probe probe(session_);
  ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
  ASSERT_TRUE(eventually([&] { return boardLiesOver(before_, observer_.grab()); }));
  // On a machine that is busy elsewhere one try may take longer than a second.
  bool wasInTime = false;
  for (int tried = 1; !wasInTime && tried <= 3; ++tried) {
    ASSERT_TRUE(eventually([] { return wallClock() - std::floor(wallClock()) < 0.2; }));
    const double second = std::floor(wallClock());
    probe.process().signal(SIGUSR1);
    const bool isRed = tried % 2 != 0;
    ASSERT_TRUE(eventually([&] { return boardLiesOver(before_, observer_.grab(), isRed); }));
    wasInTime = wallClock() < second + 1;
  }
  EXPECT_TRUE(wasInTime);
}

// Of the last second's digit alone, once a second, on the second.
TEST_P(BeatOnXfce, PaintsTheDigitsThatChangeOnceASecond) {
  Probe probe(session_);
  const auto boards = Probe::waitForBoards(observer_, 1);
  ASSERT_EQ(boards.size(), 1U);
  ASSERT_TRUE(eventually([&] { return showsNow(observer_.grab()); }));
  DamageWatch watch(session_.display(), boards[0].id);
  const auto start = static_cast<long long>(wallClock()) + 1;
  constexpr int seconds = 10;
  const auto paintings = watch.until(static_cast<double>(start + seconds) - 0.2);
  // A cell with the pixel around it that a glyph's edge may touch.
  constexpr int digitPixels = 38 * 74;
  std::vector<double> latenesses;
  for (long long second = start; second < start + seconds; ++second) {
    int pixels = 0;
    double latest = 0;
    for (const auto& painting : paintings) {
      if (static_cast<long long>(painting.seconds) != second) continue;
      pixels += painting.where.width * painting.where.height;
      latest = std::max(latest, painting.seconds - static_cast<double>(second));
    }
    EXPECT_GT(pixels, 0) << "second " << second << " was skipped";
    int changed = 1;
    for (long long rest = second; rest % 10 == 0; rest /= 10) ++changed;
    EXPECT_LE(pixels, std::min(changed, digitCount) * digitPixels) << "in second " << second;
    latenesses.push_back(latest);
  }
  // Ten milliseconds are much; they leave room for a slow machine, and so does the median.
  std::nth_element(latenesses.begin(), latenesses.begin() + seconds / 2, latenesses.end());
  EXPECT_LT(latenesses[seconds / 2], 0.010);
}

TEST_P(BeatOnXfce, SecondsNeitherSkipNorRepeat) {
  Probe probe(session_);
  ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
  ASSERT_TRUE(eventually([&] { return showsNow(observer_.grab()); }));
  int last = *readDigits(observer_.grab());
  for (int i = 0; i < 10; ++i) {
    std::optional<int> next;
    ASSERT_TRUE(eventually([&] {
      next = readDigits(observer_.grab());
      return next && *next != last;
    }));
    EXPECT_EQ(*next, (last + 1) % 100000);
    last = *next;
  }
}

// How many digits of hours, minutes and seconds differ between two lengths of time.
int changedDigits(long long from, long long to) {
  int changed = 0;
  const auto compare = [&](long long a, long long b) {
    changed += (a % 10 != b % 10 ? 1 : 0) + (a / 10 % 10 != b / 10 % 10 ? 1 : 0);
  };
  compare(from % 60, to % 60);
  compare(from / 60 % 60, to / 60 % 60);
  compare(from / 3600, to / 3600);
  return changed;
}

TEST_P(BeatOnXfce, ProgramPaintsTheDigitsThatChangeOnceASecond) {
  Program program(session_);
  const auto board = Program::waitForBoard(observer_, before_);
  ASSERT_TRUE(board);
  // What the calendars bring is on the board a moment later.
  DamageWatch watch(session_.display(), board->id);
  const auto start = static_cast<long long>(wallClock()) + 3;
  constexpr int seconds = 10;
  const auto paintings = watch.until(static_cast<double>(start + seconds) - 0.2);
  for (long long second = start; second < start + seconds; ++second) {
    const auto left = program.deadline() - second;
    int pixels = 0;
    for (const auto& painting : paintings) {
      if (static_cast<long long>(painting.seconds) != second) continue;
      pixels += painting.where.width * painting.where.height;
    }
    EXPECT_GT(pixels, 0) << "second " << second << " was skipped";
    // With the minute, texts that count in minutes change as well.
    if (left % 60 == 59) continue;
    constexpr int digitPixels = 4000;
    EXPECT_LE(pixels, changedDigits(left + 1, left) * digitPixels) << left << " seconds left";
  }
}

TEST_P(BeatOnXfce, ProgramShowsACopiedEventWithinTwoSeconds) {
  Program program(session_);
  const auto board = Program::waitForBoard(observer_, before_);
  ASSERT_TRUE(board);
  DamageWatch watch(session_.display(), board->id);
  watch.until(wallClock() + 3);
  const auto seenBefore = watch.until(wallClock()).size();
  const double copied = wallClock();
  program.addEvent("Fetch the cake");
  const auto paintings = watch.until(copied + 2);
  int largest = 0;
  for (std::size_t i = seenBefore; i < paintings.size(); ++i) {
    largest = std::max(largest, paintings[i].where.width * paintings[i].where.height);
  }
  // Far more than digits: a line of the list of events.
  EXPECT_GT(largest, 10000);
}

}  // namespace
}  // namespace orvane::desktop_test
