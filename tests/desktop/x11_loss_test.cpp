// The program while the X server, or the window manager, is killed, stopped or replaced.

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <vector>

#include "x11_probe_board.h"
#include "x11_program.h"
#include "x11_xfce.h"

namespace orvane::desktop_test {
namespace {

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORVANE_KEEPS_FREED_MEMORY
#endif
#endif

// In kB. AddressSanitizer keeps 256 MB of what was freed, to catch uses of it.
#ifdef ORVANE_KEEPS_FREED_MEMORY
constexpr long kMostGrowth = 6000 + 256 * 1024;
#else
constexpr long kMostGrowth = 6000;
#endif

std::vector<std::string> openFiles(ChildProcess& process) {
  const auto folder = "/proc/" + std::to_string(process.id()) + "/fd";
  std::vector<std::string> files;
  for (const auto& each : std::filesystem::directory_iterator(folder)) {
    std::error_code gone;
    files.push_back(std::filesystem::read_symlink(each, gone).string());
  }
  return files;
}

// What the process holds that is no file's, in kB.
long heldMemory(ChildProcess& process) {
  std::ifstream status("/proc/" + std::to_string(process.id()) + "/status");
  long held = 0;
  for (std::string word; status >> word;) {
    long kilobytes = 0;
    if ((word == "RssAnon:" || word == "RssShmem:") && status >> kilobytes) held += kilobytes;
  }
  return held;
}

class LossOfTheServer : public testing::Test {
 protected:
  // The board on the server of now, as a picture; nothing when it does not come.
  std::optional<Picture> board() {
    const Observer observer(session_.display());
    const Picture empty{1600, 900, std::vector<std::uint32_t>(std::size_t{1600} * 900)};
    if (!Program::waitForBoard(observer, empty)) return std::nullopt;
    return observer.grab();
  }
  void restartServer() {
    session_.killServer();
    session_.startServerAgain();
  }

  Session session_;
};

TEST_F(LossOfTheServer, IsSurvivedWithTheAgendaOfTheTime) {
  Program program(session_);
  const auto before = board();
  ASSERT_TRUE(before);
  session_.killServer();
  program.addEvent("Dress rehearsal");
  session_.startServerAgain();
  ASSERT_TRUE(board());
  // Another row, which a countdown that goes on would not make.
  EXPECT_TRUE(eventually([&] {
    const auto now = board();
    return now && differences(*before, *now) > 20000;
  }));
  EXPECT_EQ(program.process().output(), "");
  program.process().signal(SIGTERM);
  EXPECT_EQ(program.process().waitForEnd(), 0);
}

TEST_F(LossOfTheServer, IsSurvivedTwentyTimesInARowAndLeavesNothing) {
  Program program(session_);
  ASSERT_TRUE(board());
  std::vector<std::size_t> files;
  std::vector<long> memory;
  for (int loss = 0; loss < 20; ++loss) {
    restartServer();
    ASSERT_TRUE(board()) << loss << program.process().output();
    files.push_back(openFiles(program.process()).size());
    memory.push_back(heldMemory(program.process()));
  }
  // A file that is just being read may be counted, too, and a connection that is not there yet is
  // not.
  const auto most = *std::max_element(files.begin() + 1, files.begin() + 5);
  EXPECT_TRUE(eventually([&] { return openFiles(program.process()).size() <= most; }))
      << "in the beginning there were " << most << ", now there are "
      << testing::PrintToString(openFiles(program.process()));
  EXPECT_LT(memory.back() - memory[4], kMostGrowth);
  EXPECT_EQ(program.process().output(), "");
  program.process().signal(SIGINT);
  EXPECT_EQ(program.process().waitForEnd(), 0);
}

TEST_F(LossOfTheServer, EndsAtOnceWhenAskedToWhileItWaits) {
  for (const int how : {SIGTERM, SIGINT}) {
    Session session;
    Program program(session);
    ASSERT_TRUE(
        Program::waitForBoard(Observer(session.display()), Observer(session.display()).grab()));
    session.killServer();
    EXPECT_TRUE(throughout(Milliseconds(1000), [&] { return !program.process().status(); }));
    program.process().signal(how);
    EXPECT_EQ(program.process().waitForEnd(Milliseconds(2000)), 0);
    EXPECT_EQ(program.process().output(), "");
  }
}

// It answers nothing, but the connection stands. An answer that is waited for at that time is not
// waited for any longer than five seconds; the rest of the limit is for the program to end in.
TEST_F(LossOfTheServer, AStoppedServerKeepsNobodyFromEnding) {
  Program program(session_);
  ASSERT_TRUE(board());
  session_.server().signal(SIGSTOP);
  EXPECT_TRUE(throughout(Milliseconds(2500), [&] { return !program.process().status(); }));
  program.process().signal(SIGTERM);
  EXPECT_EQ(program.process().waitForEnd(Milliseconds(8000)), 0);
  session_.server().signal(SIGCONT);
  EXPECT_EQ(program.process().output(), "");
}

// Whose pictures go through the connection, which takes only so much of them.
class LossWithoutSharedMemory : public testing::Test {
 protected:
  // Far more than a socket holds, and an even number of times, so that the colour is the first.
  void paintRepeatedly() {
    for (int i = 1; i <= repaintings; ++i) {
      const int painted = probe_.timesSaid("painted");
      probe_.process().signal(SIGUSR1);
      ASSERT_TRUE(eventually([&] { return probe_.timesSaid("changed") == i; })) << i;
      ASSERT_TRUE(eventually([&] { return probe_.timesSaid("painted") > painted; })) << i;
    }
  }

  static constexpr int repaintings = 8;
  Session session_{{"-extension", "MIT-SHM"}};
  Observer observer_{session_.display()};
  Probe probe_{session_, {"--tells-paintings"}};
};

TEST_F(LossWithoutSharedMemory, AStoppedServerKeepsNobodyFromEnding) {
  ASSERT_TRUE(eventually([&] { return showsNow(observer_.grab()); }));
  session_.server().signal(SIGSTOP);
  paintRepeatedly();
  probe_.process().signal(SIGTERM);
  EXPECT_TRUE(probe_.process().waitForEnd(Milliseconds(8000)));
  session_.server().signal(SIGCONT);
}

TEST_F(LossWithoutSharedMemory, WhatAStoppedServerDidNotTakeFollowsWhenItGoesOn) {
  const Picture before{1600, 900, std::vector<std::uint32_t>(std::size_t{1600} * 900, 0x202124)};
  ASSERT_TRUE(eventually([&] { return showsNow(observer_.grab()); }));
  session_.server().signal(SIGSTOP);
  paintRepeatedly();
  session_.server().signal(SIGCONT);
  EXPECT_TRUE(eventually([&] {
    const auto now = observer_.grab();
    return boardLiesOver(before, now) && showsNow(now);
  }));
  probe_.process().signal(SIGTERM);
  EXPECT_EQ(probe_.process().waitForEnd(), 0);
}

class LossOfTheWindowManager : public OnXfce {
 protected:
  // Whether the board stands over the picture, at its place, between the desktop and the window.
  bool standsAsBefore(const SeenWindow& before, xcb_window_t ordinary) {
    const auto boards = Probe::boards(observer_);
    // It grows downwards as the calendars are read.
    return boards.size() == 1 && boards[0].onRoot.x == before.onRoot.x &&
           boards[0].onRoot.y == before.onRoot.y && boards[0].onRoot.width == before.onRoot.width &&
           standsBetween(ordinary) &&
           observer_.grab().at(onACard.x, onACard.y) != before_.at(onACard.x, onACard.y);
  }
  void end(Program& program) {
    EXPECT_EQ(program.process().output(), "");
    program.process().signal(SIGTERM);
    EXPECT_EQ(program.process().waitForEnd(), 0);
    EXPECT_TRUE(observer_.windowsOf("org.orvane.Orvane").empty());
  }
};

INSTANTIATE_TEST_SUITE_P(Compositing, LossOfTheWindowManager, testing::Bool(), compositingName);

TEST_P(LossOfTheWindowManager, BoardStaysWhenItIsReplacedByAnother) {
  Program program(session_);
  const auto board = Program::waitForBoard(observer_, before_);
  ASSERT_TRUE(board);
  session_.startOpenbox();
  const auto ordinary = observer_.openWindow({1100, 80, 300, 200}, 0x00ff00);
  EXPECT_TRUE(eventually([&] { return standsAsBefore(*board, ordinary); }));
  session_.startWindowManager(GetParam());
  EXPECT_TRUE(eventually([&] { return standsAsBefore(*board, ordinary); }));
  end(program);
}

TEST_P(LossOfTheWindowManager, BoardStaysWhenItIsKilledAndStartedAgain) {
  Program program(session_);
  const auto board = Program::waitForBoard(observer_, before_);
  ASSERT_TRUE(board);
  for (int loss = 0; loss < 3; ++loss) {
    session_.killWindowManager();
    EXPECT_TRUE(throughout(Milliseconds(500), [&] { return !program.process().status(); }));
    session_.startWindowManager(GetParam());
    const auto ordinary = observer_.openWindow({1100, 80, 300, 200}, 0x00ff00);
    EXPECT_TRUE(eventually([&] { return standsAsBefore(*board, ordinary); })) << loss;
    observer_.closeWindow(ordinary);
  }
  end(program);
}

}  // namespace
}  // namespace orvane::desktop_test
