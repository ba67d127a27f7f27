#include <gmock/gmock.h>

#include "example_form.h"
#include "program_window_fixture.h"

namespace orvane::host {
namespace {

using std::chrono::seconds;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

TEST_F(ProgramWindowTest, NothingRunsBeforeTheFirstShowing) {
  window_->center();
  actor_.advance(seconds(3600));
  EXPECT_FALSE(view_->isFollowed());
  EXPECT_THAT(view_->edits, IsEmpty());
}

TEST_F(ProgramWindowTest, OneShowingOpensTheWindowAsItWasMade) {
  window_->titlebarAppearsTransparent = true;
  window_->center();
  Form form;
  form.selectedTab = "style";
  view_->setForm(form);
  token_ = "token-1";
  show();
  EXPECT_THAT(toldToProgram(),
              HasSubstr("show \"Settings\" titled closable transparent centered token "
                        "\"token-1\" tab style edit 0\nupdate tab style edit 0\n"));
  EXPECT_THAT(told_, IsEmpty());
}

TEST_F(ProgramWindowTest, TheProgramGetsTheSocketAndNoOtherFileNorAnOldToken) {
  setenv("XDG_ACTIVATION_TOKEN", "old", 1);
  setenv("DESKTOP_STARTUP_ID", "old", 1);
  show();
  EXPECT_THAT(toldToProgram(), HasSubstr("\nfiles 0 1 2 3\ntoken \"\"\n"));
  unsetenv("XDG_ACTIVATION_TOKEN");
  unsetenv("DESKTOP_STARTUP_ID");
}

TEST_F(ProgramWindowTest, EditsAreCarriedOutInTheirOrderAndAnswered) {
  show("edit words lunch");
  ASSERT_TRUE(eventually([&] { return view_->edits.size() == 1; }));
  order("toggle focus");
  ASSERT_TRUE(eventually([&] { return view_->edits.size() == 2; }));
  order("press all");
  ASSERT_TRUE(eventually([&] { return view_->edits.size() == 3; }));
  EXPECT_EQ(view_->edits,
            (std::vector<FormEdit>{
                {"words", std::string("lunch")}, {"focus", true}, {"all", std::monostate{}}}));
  EXPECT_THAT(toldToProgram(), HasSubstr(" edit 3\n"));
}

TEST_F(ProgramWindowTest, OpenedAgainTheSameWindowComesToTheFront) {
  show();
  const pid_t first = process();
  token_ = "token-2";
  show();
  EXPECT_EQ(process(), first);
  EXPECT_THAT(toldToProgram(), HasSubstr("token \"token-2\""));
}

TEST_F(ProgramWindowTest, ChangesOfTheFormAreShown) {
  show();
  ASSERT_GT(process(), 0);
  Form form;
  form.selectedTab = "display";
  view_->setForm(form);
  EXPECT_THAT(toldToProgram(), EndsWith("tab display edit 1\n"));
}

TEST_F(ProgramWindowTest, AFormOfManyCalendarsAndAPictureArriveWhole) {
  Form form = fakes::exampleForm();
  auto& list = std::get<FormSourceList>(form.tabs[0].sections[0].controls[0].content);
  list.rows.assign(5000, {"key", std::string(300, 'n'), true});
  view_->setForm(form);
  show("scale 2");
  EXPECT_TRUE(eventually(
      [&] { return toldToProgram().find("preview preview 840x480 at 2\n") != std::string::npos; }));
}

// ---- Closing and opening again

TEST_F(ProgramWindowTest, ClosedTheWindowIsToldNothingMore) {
  show();
  ASSERT_GT(process(), 0);
  ASSERT_TRUE(close());
  order("tell");
  EXPECT_FALSE(view_->isFollowed());
  EXPECT_EQ(view_->edits.size(), 1U);
}

TEST_F(ProgramWindowTest, OpenedSoonAfterClosingTheSameProgramShowsItAgain) {
  show();
  const pid_t first = process();
  ASSERT_TRUE(close());
  actor_.advance(seconds(29));
  show();
  EXPECT_EQ(process(), first);
  // The time since the first closing no longer counts.
  actor_.advance(seconds(3));
  EXPECT_EQ(process(), first);
}

TEST_F(ProgramWindowTest, HalfAMinuteAfterClosingTheProgramIsGone) {
  show();
  const pid_t first = process();
  ASSERT_GT(first, 0);
  ASSERT_TRUE(close());
  actor_.advance(seconds(29));
  EXPECT_FALSE(isGone(first));
  const auto lines = linesOf([&] {
    actor_.advance(seconds(1));
    EXPECT_TRUE(eventually([&] { return isGone(first); }));
  });
  EXPECT_EQ(lines, "");
  EXPECT_EQ(actor_.pendingTimers(), 0U);
}

TEST_F(ProgramWindowTest, OpenedLaterTheWindowIsAsItWasLeft) {
  window_->center();
  show("state");
  const pid_t first = process();
  ASSERT_TRUE(close());
  actor_.advance(seconds(31));
  ASSERT_TRUE(eventually([&] { return isGone(first); }));
  show();
  const auto told = toldToProgram();
  EXPECT_THAT(told, Not(HasSubstr("process " + std::to_string(first) + "\n")));
  EXPECT_THAT(told, HasSubstr("show \"Settings\" at 40,-30 sources=120.5 titled"));
}

TEST_F(ProgramWindowTest, OpenedWhileTheOldProgramLeavesANewOneIsStarted) {
  show("stay on");
  const pid_t first = process();
  ASSERT_TRUE(close());
  actor_.advance(seconds(31));
  show();
  const pid_t second = process();
  EXPECT_NE(second, first);
  EXPECT_FALSE(isGone(first));
  actor_.advance(seconds(5));
  EXPECT_TRUE(eventually([&] { return isGone(first); }));
  EXPECT_EQ(process(), second);
}

TEST_F(ProgramWindowTest, AClosingOlderThanTheLastShowingDoesNotCount) {
  show();
  ASSERT_GT(process(), 0);
  ASSERT_EQ(view_->edits.size(), 1U);
  show("close first");
  EXPECT_THAT(toldToProgram(), HasSubstr("show"));
  EXPECT_TRUE(view_->isFollowed());
}

TEST_F(ProgramWindowTest, AWindowReleasedWhenClosedTakesItsProgramWithIt) {
  window_->isReleasedWhenClosed = true;
  show();
  const pid_t first = process();
  ASSERT_TRUE(close());
  EXPECT_TRUE(eventually([&] { return isGone(first); }));
}

TEST_F(ProgramWindowTest, TheProgramEndsWithTheWindow) {
  show("stay on");
  const pid_t first = process();
  ASSERT_GT(first, 0);
  window_.reset();
  EXPECT_TRUE(isGone(first));
}

// ---- What goes wrong

TEST_F(ProgramWindowTest, ACrashIsALineAndTheNextShowingStartsItAnew) {
  show("state");
  const pid_t first = process();
  const auto lines = linesOf([&] {
    order("crash");
    EXPECT_TRUE(isSeenNoMore());
  });
  EXPECT_EQ(lines, "orvane: The settings window ended unexpectedly (signal 9).\n");
  EXPECT_TRUE(isGone(first));
  EXPECT_THAT(told_, IsEmpty());
  actor_.advance(seconds(60));
  EXPECT_FALSE(view_->isFollowed());
  show();
  const auto told = toldToProgram();
  EXPECT_THAT(told, StartsWith("process "));
  EXPECT_THAT(told, HasSubstr("show \"Settings\" at 40,-30"));
}

TEST_F(ProgramWindowTest, KilledFromOutsideItIsStartedAnewToo) {
  show();
  const pid_t first = process();
  ASSERT_GT(first, 0);
  const auto lines = linesOf([&] {
    kill(first, SIGKILL);
    EXPECT_TRUE(isSeenNoMore());
  });
  EXPECT_EQ(lines, "orvane: The settings window ended unexpectedly (signal 9).\n");
  show();
  EXPECT_NE(process(), first);
}

TEST_F(ProgramWindowTest, AnEditBeforeACrashCounts) {
  show("last words");
  EXPECT_TRUE(isSeenNoMore());
  EXPECT_EQ(view_->edits, (std::vector<FormEdit>{{"words", std::string("lunch")}}));
}

TEST_F(ProgramWindowTest, AProgramThatEndsWhileHiddenIsNotMissed) {
  show();
  const pid_t first = process();
  ASSERT_TRUE(close());
  const auto lines = linesOf([&] {
    kill(first, SIGTERM);
    EXPECT_TRUE(eventually([&] { return isGone(first); }));
  });
  EXPECT_EQ(lines, "orvane: The settings window ended unexpectedly (signal 15).\n");
  EXPECT_EQ(actor_.pendingTimers(), 0U);
  show();
  EXPECT_NE(process(), first);
}

TEST_F(ProgramWindowTest, OneThatAcknowledgesNothingIsEndedInTheEnd) {
  show();
  const pid_t first = process();
  order("!nothing");
  actor_.advance(seconds(19));
  EXPECT_FALSE(isGone(first));
  const auto lines = linesOf([&] { actor_.advance(seconds(1)); });
  EXPECT_EQ(lines, "orvane: The settings window did not answer any more, and was ended.\n");
  EXPECT_TRUE(isGone(first));
}

// As after a suspend, in which the clock went on and the program did not.
TEST_F(ProgramWindowTest, OneThatAcknowledgesLateIsKept) {
  show();
  const pid_t first = process();
  kill(first, SIGSTOP);
  order("edit words lunch");
  actor_.advance(seconds(15));
  kill(first, SIGCONT);
  EXPECT_TRUE(eventually([&] { return view_->edits.size() == 2; }));
  ASSERT_TRUE(isAtRest());
  actor_.advance(seconds(60));
  EXPECT_EQ(process(), first);
}

TEST_F(ProgramWindowTest, AskedForWhileItHangsTheWindowIsOpenedAnew) {
  show();
  const pid_t first = process();
  order("!nothing");
  show();
  EXPECT_EQ(linesOf([&] { actor_.advance(seconds(20)); }),
            "orvane: The settings window did not answer any more, and was ended.\n");
  EXPECT_TRUE(isGone(first));
  const pid_t second = process();
  EXPECT_GT(second, 0);
  EXPECT_NE(second, first);
}

TEST_F(ProgramWindowTest, OneThatTalksNonsenseIsEnded) {
  show();
  const pid_t first = process();
  const auto lines = linesOf([&] {
    order("garbage");
    EXPECT_TRUE(isSeenNoMore());
  });
  EXPECT_EQ(lines,
            "orvane: The settings window said something that makes no sense, and was ended.\n");
  EXPECT_TRUE(isGone(first));
}

TEST_F(ProgramWindowTest, OneThatHangsUpAndStaysIsEnded) {
  show();
  const pid_t first = process();
  order("hang up");
  const auto lines = linesOf([&] {
    EXPECT_TRUE(eventually([&] {
      actor_.advance(std::chrono::milliseconds(500));
      return isGone(first);
    }));
  });
  EXPECT_EQ(lines, "orvane: The settings window hung up.\n");
}

TEST_F(ProgramWindowTest, WhereItIsNotInstalledTheUserIsToldEachTime) {
  makeWindow("/nowhere/orvane-settings");
  show();
  show();
  EXPECT_EQ(told_, (std::vector<std::string>{"Settings: The settings window is not installed.",
                                             "Settings: The settings window is not installed."}));
  EXPECT_FALSE(view_->isFollowed());
}

TEST_F(ProgramWindowTest, WhereItCannotBeSeenTheUserIsToldWhy) {
  const struct {
    const char* order;
    const char* sentence;
  } cases[] = {{"!exit 127", "Settings: The settings window needs GTK 4, which is not installed."},
               {"!exit 69", "Settings: The settings window found no display to show itself on."},
               {"!exit 1", "Settings: The settings window ended unexpectedly (status 1)."},
               {"!crash", "Settings: The settings window ended unexpectedly (signal 9)."}};
  for (const auto& one : cases) {
    show(one.order);
    EXPECT_TRUE(eventually([&] { return !told_.empty(); }));
    EXPECT_EQ(std::exchange(told_, {}), std::vector<std::string>{one.sentence});
  }
  actor_.advance(seconds(60));
  EXPECT_THAT(told_, IsEmpty());
  EXPECT_EQ(actor_.pendingTimers(), 0U);
}

TEST_F(ProgramWindowTest, MoreThanCanBeToldIsSaidSo) {
  Form form = fakes::exampleForm();
  std::get<FormSourceList>(form.tabs[0].sections[0].controls[0].content).rows.assign(60'000, {});
  view_->setForm(form);
  window_->show();
  actor_.runUntilIdle();
  EXPECT_EQ(told_, std::vector<std::string>{
                       "Settings: There are too many calendars, lists or displays to show the "
                       "settings."});
}

TEST_F(ProgramWindowTest, AHundredOpeningsAndClosingsLeaveNothingBehind) {
  show();
  const pid_t first = process();
  for (int round = 0; round < 100; ++round) {
    ASSERT_TRUE(close());
    show("edit words lunch");
    ASSERT_TRUE(eventually([&] { return view_->edits.size() == std::size_t(round) + 2; }));
  }
  EXPECT_EQ(process(), first);
  ASSERT_TRUE(close());
  EXPECT_EQ(actor_.pendingTimers(), 1U);
}

}  // namespace
}  // namespace orvane::host
