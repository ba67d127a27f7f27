// When and what the windows paint, seen from the server's side on Xfce. These tests measure time,
// so they run alone.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <memory>

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
  // Thirty milliseconds are much; they leave room for a slow machine, and so does the median.
  std::nth_element(latenesses.begin(), latenesses.begin() + seconds / 2, latenesses.end());
  EXPECT_LT(latenesses[seconds / 2], 0.030);
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

// What the desktop tells of a board that cannot be seen.
class BeatOutOfSight : public BeatOnXfce {
 protected:
  void SetUp() override {
    const auto boards = Probe::waitForBoards(observer_, 1);
    ASSERT_EQ(boards.size(), 1U);
    ASSERT_TRUE(eventually([&] { return showsNow(observer_.grab()); }));
    watch_ = std::make_unique<DamageWatch>(session_.display(), boards[0].id);
  }
  xcb_window_t fillScreen() {
    const auto window = observer_.openWindow({300, 200, 300, 200}, green);
    EXPECT_TRUE(eventually([&] { return observer_.grab().at(400, 300) == green; }));
    observer_.setFullScreen(window, true);
    return window;
  }
  // How often the board is painted in so many seconds from now.
  std::size_t paintingsWithin(double seconds) {
    const auto before = watch_->until(wallClock()).size();
    return watch_->until(wallClock() + seconds).size() - before;
  }
  bool comesToRest() {
    return eventually([&] { return paintingsWithin(2.2) == 0; });
  }
  // Within so much of a second, though a beat may be further away.
  void expectPaintedAtOnce() {
    const auto before = watch_->until(wallClock()).size();
    const double asked = wallClock();
    EXPECT_TRUE(eventually([&] { return watch_->until(wallClock() + 0.01).size() > before; }));
    const auto paintings = watch_->until(wallClock());
    ASSERT_GT(paintings.size(), before);
    EXPECT_LT(paintings[before].seconds - asked, 0.5);
    EXPECT_TRUE(eventually([&] { return showsNow(observer_.grab()); }));
  }

  static constexpr std::uint32_t green = 0x208040;
  Probe probe_{session_};
  std::unique_ptr<DamageWatch> watch_;
};

INSTANTIATE_TEST_SUITE_P(Compositing, BeatOutOfSight, testing::Bool(), compositingName);

TEST_P(BeatOutOfSight, IsNoneBehindAWindowThatFillsTheScreen) {
  const auto window = fillScreen();
  ASSERT_TRUE(eventually([&] { return observer_.grab().at(150, 130) == green; }));
  EXPECT_TRUE(comesToRest());
  observer_.setFullScreen(window, false);
  expectPaintedAtOnce();
  observer_.setFullScreen(window, true);
  EXPECT_TRUE(comesToRest());
  observer_.closeWindow(window);
  expectPaintedAtOnce();
  EXPECT_EQ(probe_.process().output(), "");
}

// Where nobody composes, nothing shines through.
class BeatBehindGlass : public BeatOutOfSight {};

INSTANTIATE_TEST_SUITE_P(Compositing, BeatBehindGlass, testing::Values(true), compositingName);

TEST_P(BeatBehindGlass, GoesOnWhereItShinesThrough) {
  const auto window = observer_.openWindow({300, 200, 300, 200}, green);
  observer_.makeTranslucent(window);
  observer_.setFullScreen(window, true);
  EXPECT_TRUE(eventually([&] { return observer_.grab().at(1500, 800) != before_.at(1500, 800); }));
  EXPECT_FALSE(eventually([&] { return paintingsWithin(2.2) == 0; }, Milliseconds(5000)));
}

TEST_P(BeatBehindGlass, ComesAgainWhenItBeginsToShineThrough) {
  const auto window = fillScreen();
  ASSERT_TRUE(comesToRest());
  observer_.makeTranslucent(window);
  EXPECT_TRUE(eventually([&] { return paintingsWithin(1.2) > 0; }));
}

// As with two monitors, of which the other one is worked at.
TEST_P(BeatBehindGlass, IsNoneWhereAnotherWindowIsActive) {
  const auto window = fillScreen();
  ASSERT_TRUE(eventually([&] { return observer_.activeWindow() == window; }));
  ASSERT_TRUE(comesToRest());
  const auto other = observer_.openWindow({1100, 80, 300, 200}, 0x00ff00);
  ASSERT_TRUE(eventually([&] { return observer_.activeWindow() == other; }));
  // It may be drawn once, while neither is active.
  EXPECT_TRUE(comesToRest());
  observer_.closeWindow(window);
  expectPaintedAtOnce();
}

TEST_P(BeatOutOfSight, IsNoneWhileTheScreenIsBlank) {
  ASSERT_EQ(session_.start({"xset", "s", "activate"})->waitForEnd(), 0);
  EXPECT_TRUE(comesToRest());
  ASSERT_EQ(session_.start({"xset", "s", "reset"})->waitForEnd(), 0);
  expectPaintedAtOnce();
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
