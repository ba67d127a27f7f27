// The windows on Xfce: its window manager, with and without compositing, and its desktop.

#include "x11_xfce.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <set>

#include "x11_probe_board.h"

namespace orvane::desktop_test {
namespace {

INSTANTIATE_TEST_SUITE_P(Compositing, OnXfce, testing::Bool(), compositingName);

TEST_P(OnXfce, BoardLiesOverThePictureAndNothingElseChanges) {
  Probe probe(session_);
  ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
  EXPECT_TRUE(eventually([&] { return boardLiesOver(before_, observer_.grab()); }));
  EXPECT_TRUE(restIsUntouched(before_, observer_.grab()));
  EXPECT_TRUE(eventually([&] { return showsNow(observer_.grab()); }));
  EXPECT_EQ(Probe::boards(observer_)[0].depth, GetParam() ? 32 : 24);
  EXPECT_EQ(probe.process().output(), "");
}

TEST_P(OnXfce, WindowIsNoLargerThanWhatIsDrawn) {
  Probe probe(session_);
  const auto boards = Probe::waitForBoards(observer_, 1);
  ASSERT_EQ(boards.size(), 1U);
  constexpr int margin = 16;
  const auto& actual = boards[0].onRoot;
  EXPECT_LE(actual.x, boardArea.x);
  EXPECT_LE(actual.y, boardArea.y);
  EXPECT_GE(actual.x + actual.width, boardArea.x + boardArea.width);
  EXPECT_GE(actual.y + actual.height, boardArea.y + boardArea.height);
  EXPECT_LT(actual.width, boardArea.width + 2 * margin);
  EXPECT_LT(actual.height, boardArea.height + 2 * margin);
}

TEST_P(OnXfce, ClicksPassThroughTheBoard) {
  Probe probe(session_);
  ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
  // Twice at a place of the board without an icon under it: the second after the first was served.
  EXPECT_TRUE(eventually([&] { return opensDesktopMenu(200, 100, Milliseconds(1000)); }));
  EXPECT_TRUE(opensDesktopMenu(230, 60, generous));
}

// The test above would fail if clicks did not pass.
TEST_P(OnXfce, ClicksDoNotPassThroughABoardThatTakesThem) {
  Probe probe(session_, {"--catches-clicks"});
  ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
  ASSERT_TRUE(eventually([&] { return opensDesktopMenu(1000, 700, Milliseconds(1000)); }));
  EXPECT_FALSE(opensDesktopMenu(200, 100, Milliseconds(1500)));
}

TEST_P(OnXfce, StaysBetweenTheDesktopAndOrdinaryWindows) {
  Probe probe(session_);
  ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
  const auto ordinary = observer_.openWindow({100, 80, 300, 200}, 0x00ff00);
  EXPECT_TRUE(eventually([&] { return standsBetween(ordinary); }));
  EXPECT_TRUE(eventually([&] { return observer_.grab().at(150, 130) == 0x00ff00; }));
  observer_.click(1000, 700, 1);
  observer_.click(200, 60, 1);
  EXPECT_TRUE(throughout(Milliseconds(1000), [&] { return standsBetween(ordinary); }));
  EXPECT_TRUE(eventually(
      [&] { return showsNow(observer_.grab()) || observer_.grab().at(150, 130) == 0x00ff00; }));
}

// The test above would fail if the board stood too high.
TEST_P(OnXfce, RaisedBoardDoesNotStandBetween) {
  Probe probe(session_, {"--raised"});
  ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
  const auto ordinary = observer_.openWindow({100, 80, 300, 200}, 0x00ff00);
  ASSERT_TRUE(eventually([&] { return order(ordinary).size() == 3; }));
  EXPECT_FALSE(eventually([&] { return standsBetween(ordinary); }, Milliseconds(1500)));
}

TEST_P(OnXfce, LeavesNothingBehind) {
  const auto tops = observer_.topLevels();
  {
    Probe probe(session_);
    ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
    ASSERT_TRUE(eventually([&] { return boardLiesOver(before_, observer_.grab()); }));
    probe.process().signal(SIGTERM);
    EXPECT_EQ(probe.process().waitForEnd(), 0);
  }
  EXPECT_TRUE(observer_.windowsOf("org.orvane.Orvane").empty());
  EXPECT_TRUE(eventually([&] { return observer_.grab() == before_; }));
  // Xfwm4 may keep one window of its own that it measures shapes with.
  EXPECT_LE(observer_.topLevels().size(), tops.size() + 1);
}

TEST_P(OnXfce, KeepsOutOfTaskbarAndPagerAndStandsOnEveryWorkspace) {
  Probe probe(session_);
  const auto boards = Probe::waitForBoards(observer_, 1);
  ASSERT_EQ(boards.size(), 1U);
  const auto states = [&] {
    const auto numbers = observer_.numbers(boards[0].id, "_NET_WM_STATE");
    return std::set(numbers.begin(), numbers.end());
  };
  EXPECT_TRUE(states().contains(observer_.atom("_NET_WM_STATE_SKIP_TASKBAR")));
  EXPECT_TRUE(states().contains(observer_.atom("_NET_WM_STATE_SKIP_PAGER")));
  observer_.showWorkspace(1);
  ASSERT_TRUE(eventually([&] {
    return observer_.numbers(observer_.root(), "_NET_CURRENT_DESKTOP") == std::vector{1U};
  }));
  EXPECT_TRUE(eventually([&] { return showsNow(observer_.grab()); }));
  EXPECT_TRUE(throughout(Milliseconds(500), [&] { return Probe::boards(observer_).size() == 1; }));
}

TEST_P(OnXfce, BoardOfOneWorkspaceRestsOnOthersAndIsRightWhenItComesBack) {
  Probe probe(session_, {"--one-space"});
  const auto boards = Probe::waitForBoards(observer_, 1);
  ASSERT_EQ(boards.size(), 1U);
  observer_.showWorkspace(1);
  ASSERT_TRUE(eventually([&] { return Probe::boards(observer_).empty(); }));
  DamageWatch watch(session_.display(), boards[0].id);
  EXPECT_TRUE(watch.until(wallClock() + 2.5).empty());
  observer_.showWorkspace(0);
  EXPECT_TRUE(eventually([&] { return showsNow(observer_.grab()); }));
  EXPECT_EQ(Probe::boards(observer_).size(), 1U);
}

TEST_P(OnXfce, BoardThatShowsNothingHasNoWindow) {
  Probe probe(session_);
  const auto boards = Probe::waitForBoards(observer_, 1);
  ASSERT_EQ(boards.size(), 1U);
  const auto allDesktops = observer_.numbers(boards[0].id, "_NET_WM_DESKTOP");
  probe.process().signal(SIGUSR2);
  EXPECT_TRUE(eventually([&] { return Probe::boards(observer_).empty(); }));
  EXPECT_TRUE(eventually([&] { return observer_.grab() == before_; }));
  probe.process().signal(SIGUSR2);
  // Window managers forget what they know of a window that is withdrawn.
  EXPECT_TRUE(eventually([&] {
    const auto again = Probe::boards(observer_);
    return !again.empty() && observer_.numbers(again[0].id, "_NET_WM_DESKTOP") == allDesktops &&
           observer_.numbers(again[0].id, "_NET_WM_STATE").size() == 4;
  }));
  EXPECT_TRUE(eventually([&] { return boardLiesOver(before_, observer_.grab()); }));
  EXPECT_TRUE(eventually([&] { return opensDesktopMenu(200, 100, Milliseconds(1000)); }));
  EXPECT_EQ(Probe::boards(observer_).size(), 1U);
}

TEST_P(OnXfce, FollowsAChangeOfCompositing) {
  Probe probe(session_);
  ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
  session_.startWindowManager(!GetParam());
  const int depth = GetParam() ? 24 : 32;
  EXPECT_TRUE(eventually([&] {
    const auto boards = Probe::boards(observer_);
    return boards.size() == 1 && boards[0].depth == depth;
  }));
  EXPECT_TRUE(eventually([&] { return boardLiesOver(before_, observer_.grab()); }));
  EXPECT_TRUE(eventually([&] { return showsNow(observer_.grab()); }));
  EXPECT_TRUE(eventually([&] { return opensDesktopMenu(200, 100, Milliseconds(1000)); }));
}

TEST_P(OnXfce, StaysInSightWhenTheDesktopIsShown) {
  Probe probe(session_);
  ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
  observer_.openWindow({0, 0, 600, 600}, 0x00ff00);
  ASSERT_TRUE(eventually([&] { return observer_.grab().at(150, 130) == 0x00ff00; }));
  observer_.showDesktop();
  EXPECT_TRUE(eventually([&] { return boardLiesOver(before_, observer_.grab()); }));
  EXPECT_TRUE(eventually([&] { return showsNow(observer_.grab()); }));
}

class BeforeTheDesktop : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(Compositing, BeforeTheDesktop, testing::Bool(), compositingName);

TEST_P(BeforeTheDesktop, BoardThatWasThereFirstComesToLieOverIt) {
  Session session;
  session.startWindowManager(GetParam());
  const Observer observer(session.display());
  Probe probe(session);
  ASSERT_EQ(Probe::waitForBoards(observer, 1).size(), 1U);
  session.startDesktop();
  const auto with = [&] { return observer.grab(); };
  EXPECT_TRUE(eventually([&] { return showsNow(with()); }));
  // The board is half its own colour and half of what is beneath; take it away to know that.
  const auto seen = with();
  probe.process().signal(SIGUSR2);
  ASSERT_TRUE(eventually([&] { return Probe::boards(observer).empty(); }));
  EXPECT_TRUE(eventually([&] { return boardLiesOver(with(), seen); }));
}

}  // namespace
}  // namespace orvane::desktop_test
