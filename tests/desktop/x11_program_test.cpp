// The program itself on Xfce.

#include "x11_program.h"

#include <gtest/gtest.h>

#include <csignal>

#include "x11_probe_board.h"
#include "x11_xfce.h"

namespace orvane::desktop_test {
namespace {

class ProgramOnXfce : public OnXfce {
 protected:
  void setMonitor(const std::string& name, const std::string& geometry, const std::string& output) {
    ASSERT_EQ(session_.start({"xrandr", "--setmonitor", name, geometry, output})->waitForEnd(), 0);
  }
};

INSTANTIATE_TEST_SUITE_P(Compositing, ProgramOnXfce, testing::Bool(), compositingName);

TEST_P(ProgramOnXfce, DashboardStandsOverThePictureAndLeavesNothingBehind) {
  {
    Program program(session_);
    const auto board = Program::waitForBoard(observer_, before_);
    ASSERT_TRUE(board);
    // Where no card is, the picture is as it was, also within the window.
    EXPECT_EQ(observer_.grab().at(1500, 850), before_.at(1500, 850));
    EXPECT_LT(board->onRoot.width, 1400) << "the window covers more than what is drawn";
    program.process().signal(SIGTERM);
    EXPECT_EQ(program.process().waitForEnd(), 0);
    EXPECT_EQ(program.process().output(), "");
  }
  EXPECT_TRUE(observer_.windowsOf("org.orvane.Orvane").empty());
  EXPECT_TRUE(eventually([&] { return observer_.grab() == before_; }));
}

TEST_P(ProgramOnXfce, ClicksPassThroughItsCards) {
  Program program(session_);
  ASSERT_TRUE(Program::waitForBoard(observer_, before_));
  EXPECT_TRUE(
      eventually([&] { return opensDesktopMenu(onACard.x, onACard.y, Milliseconds(1000)); }));
}

TEST_P(ProgramOnXfce, StaysBetweenTheDesktopAndOrdinaryWindows) {
  Program program(session_);
  ASSERT_TRUE(Program::waitForBoard(observer_, before_));
  const auto ordinary = observer_.openWindow({100, 80, 300, 200}, 0x00ff00);
  EXPECT_TRUE(eventually([&] { return standsBetween(ordinary); }));
  observer_.click(1500, 850, 1);
  observer_.click(onACard.x + 200, onACard.y, 1);
  EXPECT_TRUE(throughout(Milliseconds(1000), [&] { return standsBetween(ordinary); }));
}

TEST_P(ProgramOnXfce, FollowsTheMainMonitor) {
  Program program(session_);
  ASSERT_TRUE(Program::waitForBoard(observer_, before_));
  setMonitor("LEFT", "800/300x900/300+0+0", "none");
  setMonitor("*RIGHT", "800/300x900/300+800+0", "screen");
  const auto standsAt = [&](int from, int to) {
    const auto boards = Probe::boards(observer_);
    return boards.size() == 1 && boards[0].onRoot.x >= from &&
           boards[0].onRoot.x + boards[0].onRoot.width <= to;
  };
  EXPECT_TRUE(eventually([&] { return standsAt(800, 1600); }));
  ASSERT_EQ(session_.start({"xrandr", "--delmonitor", "LEFT"})->waitForEnd(), 0);
  ASSERT_EQ(session_.start({"xrandr", "--delmonitor", "RIGHT"})->waitForEnd(), 0);
  EXPECT_TRUE(eventually([&] { return standsAt(0, 1600) && !standsAt(800, 1600); }));
  EXPECT_TRUE(Program::waitForBoard(observer_, before_));
  EXPECT_EQ(program.process().output(), "");
}

}  // namespace
}  // namespace orvane::desktop_test
