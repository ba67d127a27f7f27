// The grab on a real X server, whose keys are pressed as a keyboard would.

#include "linux/hotkey/x11_grab.h"

#include <gtest/gtest.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <optional>

#include "../../desktop/x11_observer.h"
#include "../../desktop/x11_session.h"
#include "../gio/private_bus.h"
#include "linux/mainloop/main_loop.h"
#include "linux/xcb/reply.h"
#include "platform/event_hot_keys.h"

namespace orvane::host::hotkey {
namespace {

using desktop_test::Observer;
using desktop_test::Session;
using gio::eventually;

constexpr Combination kSuperShiftZ{0x06, cmdKey | shiftKey};
constexpr std::uint16_t kSuperAndShift = XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT;

// Places on a keyboard, as all of today's X servers number them.
constexpr xcb_keycode_t kShift = 50;
constexpr xcb_keycode_t kSuper = 133;
constexpr xcb_keycode_t kControl = 37;
constexpr xcb_keycode_t kNumLock = 77;
constexpr xcb_keycode_t kCapsLock = 66;
constexpr xcb_keycode_t kAnsiZ = 52;
constexpr xcb_keycode_t kAnsiX = 53;
constexpr xcb_keycode_t kAnsiW = 25;  // the Z of a French keyboard

class X11GrabTest : public testing::Test {
 protected:
  void SetUp() override { testing::internal::CaptureStderr(); }
  void TearDown() override { EXPECT_EQ(testing::internal::GetCapturedStderr(), complaint_); }

  void begin() {
    source_ = makeX11Grab(session_.display(), kSuperShiftZ, *loop_, [this] { ++presses_; });
    ASSERT_TRUE(source_);
  }
  void grab(xcb_keycode_t key = kAnsiZ) {
    begin();
    EXPECT_TRUE(eventually([&] { return isTaken(key); }));
  }
  // Whether somebody else's grab is in the way of one of ours.
  [[nodiscard]] bool isTaken(xcb_keycode_t key, std::uint16_t modifiers = kSuperAndShift) const {
    if (!tryToTake(key, modifiers)) return true;
    xcb_ungrab_key(observer_->connection(), key, observer_->root(), modifiers);
    observer_->sync();
    return false;
  }

  void down(xcb_keycode_t key) { fake(XCB_KEY_PRESS, key); }
  void up(xcb_keycode_t key) { fake(XCB_KEY_RELEASE, key); }
  void tap(xcb_keycode_t key) {
    down(key);
    up(key);
  }
  void combine(xcb_keycode_t key) {
    down(kSuper);
    down(kShift);
    tap(key);
    up(kShift);
    up(kSuper);
    // No hand presses a key again in the millisecond in which it let go of it.
    wait(0.01);
  }
  // Presses the combination until it is heard of: a new mapping takes effect in its own time.
  bool comesToCount(xcb_keycode_t key = kAnsiZ) {
    const int before = presses_;
    return eventually([&] {
      if (presses_ == before) combine(key);
      waitABeat();
      return presses_ > before;
    });
  }
  // Whether exactly one press is heard of after the combination; the grab of a later press proves
  // that nothing is still on its way.
  bool counts(xcb_keycode_t key = kAnsiZ) {
    const int before = presses_;
    combine(key);
    const bool heard = eventually([&] { return presses_ > before; });
    const int first = presses_ - before;
    combine(key);
    return heard && first == 1 && eventually([&] { return presses_ == before + 2; });
  }
  // What is on its way between the server and us arrives within a few round trips.
  void waitABeat() {
    for (int trip = 0; trip < 3; ++trip) {
      observer_->sync();
      for (int turn = 0; turn < 5; ++turn) g_main_context_iteration(nullptr, FALSE);
    }
  }
  static void wait(double seconds) {
    const auto end = desktop_test::wallClock() + seconds;
    eventually([&] { return desktop_test::wallClock() > end; });
  }
  // One try at least finds no server.
  static void waitForLoss() { wait(1.2); }
  void setLayout(const std::string& layout) const {
    ASSERT_EQ(session_.start({"setxkbmap", "-layout", layout})->waitForEnd(), 0);
  }
  // Grabs the combination as another program does; answers whether it was free.
  [[nodiscard]] bool tryToTake(xcb_keycode_t key = kAnsiZ,
                               std::uint16_t modifiers = kSuperAndShift) const {
    const auto request =
        xcb_grab_key_checked(observer_->connection(), 0, observer_->root(), modifiers, key,
                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const xcb::Reply<xcb_generic_error_t> error(
        xcb_request_check(observer_->connection(), request));
    return !error;
  }

  Session session_;
  std::optional<Observer> observer_{session_.display()};
  std::unique_ptr<MainLoop> loop_ = makeMainLoop();
  int presses_ = 0;
  std::string complaint_;
  std::unique_ptr<HotKeySource> source_;

 private:
  void fake(std::uint8_t type, xcb_keycode_t key) {
    xcb_test_fake_input(observer_->connection(), type, key, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    observer_->sync();
  }
};

TEST_F(X11GrabTest, HearsOfEveryPressOnce) {
  grab();
  EXPECT_TRUE(counts());
}

TEST_F(X11GrabTest, HearsOfThePressUnderEveryStateOfTheLocks) {
  grab();
  EXPECT_TRUE(counts());
  tap(kNumLock);
  EXPECT_TRUE(counts()) << "NumLock";
  tap(kCapsLock);
  EXPECT_TRUE(counts()) << "NumLock and CapsLock";
  tap(kNumLock);
  EXPECT_TRUE(counts()) << "CapsLock";
}

TEST_F(X11GrabTest, HearsOfNoOtherCombination) {
  grab();
  tap(kAnsiZ);
  down(kSuper);
  tap(kAnsiZ);
  down(kShift);
  tap(kAnsiX);
  down(kControl);
  tap(kAnsiZ);
  for (const auto key : {kControl, kShift, kSuper}) up(key);
  EXPECT_TRUE(counts());
  EXPECT_EQ(presses_, 2);
}

// The server repeats a held key by itself.
TEST_F(X11GrabTest, HeldKeyCountsOnce) {
  ASSERT_EQ(session_.start({"xset", "r", "rate", "50", "100"})->waitForEnd(), 0);
  const auto window = observer_->openWindow({0, 0, 100, 100}, 0);
  xcb_set_input_focus(observer_->connection(), XCB_INPUT_FOCUS_NONE, window, XCB_CURRENT_TIME);
  grab();
  down(kSuper);
  down(kShift);
  down(kAnsiZ);
  ASSERT_TRUE(eventually([&] { return presses_ == 1; }));
  wait(0.7);
  EXPECT_EQ(presses_, 1);
  // The modifiers may be let go of first, and other keys pressed.
  up(kShift);
  tap(kAnsiX);
  up(kSuper);
  wait(0.5);
  EXPECT_EQ(presses_, 1);
  up(kAnsiZ);
  wait(0.01);
  EXPECT_TRUE(counts());
}

TEST_F(X11GrabTest, OnALayoutWithoutTheLetterItsPlaceCounts) {
  setLayout("ru");
  grab();
  EXPECT_TRUE(comesToCount());
  EXPECT_TRUE(counts());
}

TEST_F(X11GrabTest, OnALayoutThatHasTheLetterElsewhereTheLetterCounts) {
  setLayout("fr");
  grab(kAnsiW);
  EXPECT_TRUE(comesToCount(kAnsiW));
  EXPECT_TRUE(counts(kAnsiW));
}

TEST_F(X11GrabTest, LetterOfASecondLayoutCounts) {
  setLayout("ru,us");
  grab();
  EXPECT_TRUE(comesToCount());
  EXPECT_TRUE(counts());
}

TEST_F(X11GrabTest, FollowsAChangeOfTheLayout) {
  grab();
  ASSERT_TRUE(counts());
  setLayout("fr");
  EXPECT_TRUE(comesToCount(kAnsiW));
  const int before = presses_;
  combine(kAnsiZ);
  EXPECT_TRUE(counts(kAnsiW));
  EXPECT_EQ(presses_, before + 2) << "the old place counts no more";
  setLayout("ru");
  EXPECT_TRUE(comesToCount());
  setLayout("us");
  EXPECT_TRUE(comesToCount());
  EXPECT_TRUE(counts());
}

TEST_F(X11GrabTest, FollowsNumLockToAnotherModifier) {
  grab();
  ASSERT_TRUE(counts());
  const auto program = "clear mod2\nclear mod3\nadd mod3 = Num_Lock";
  ASSERT_EQ(
      session_.start({"sh", "-c", std::string("echo '") + program + "' | xmodmap -"})->waitForEnd(),
      0);
  tap(kNumLock);
  EXPECT_TRUE(comesToCount());
  EXPECT_TRUE(counts());
}

TEST_F(X11GrabTest, KeyOfAnotherProgramStaysWithItAndOneLineSaysSo) {
  complaint_ = "orvane: Another program holds the key that toggles focus mode.\n";
  ASSERT_TRUE(tryToTake());
  begin();
  // It has seen the refusal when it has all the mixes that were left.
  EXPECT_TRUE(eventually([&] { return isTaken(kAnsiZ, kSuperAndShift | XCB_MOD_MASK_LOCK); }));
  combine(kAnsiZ);
  waitABeat();
  EXPECT_EQ(presses_, 0);
  // A change of the mapping tries it again, without a further word.
  setLayout("ru");
  setLayout("us");
  waitABeat();
  combine(kAnsiZ);
  waitABeat();
  EXPECT_EQ(presses_, 0);
}

TEST_F(X11GrabTest, GivenUpIsFreeForOthers) {
  grab();
  ASSERT_TRUE(counts());
  source_.reset();
  // The server hears in its own time that the connection has ended.
  EXPECT_TRUE(eventually([&] { return tryToTake(); }));
}

TEST_F(X11GrabTest, ServerThatCameBackIsGrabbedAgain) {
  grab();
  ASSERT_TRUE(counts());
  observer_.reset();
  session_.killServer();
  waitForLoss();
  session_.startServerAgain();
  observer_.emplace(session_.display());
  EXPECT_TRUE(comesToCount());
  EXPECT_TRUE(counts());
}

// Nothing of ours waits for it: not for being let in, and not for long for an answer.
TEST_F(X11GrabTest, ServerThatHangsIsWaitedForAside) {
  session_.server().signal(SIGSTOP);
  const double before = desktop_test::wallClock();
  begin();
  waitForLoss();
  EXPECT_LT(desktop_test::wallClock() - before, 5);
  session_.server().signal(SIGCONT);
  EXPECT_TRUE(comesToCount());
}

TEST_F(X11GrabTest, ServerThatHangsOnceItHasLetUsInIsLostAndTriedAgain) {
  begin();
  // Meanwhile the server lets us in, and the loop stands still.
  const double letIn = desktop_test::wallClock() + 0.5;
  EXPECT_TRUE(desktop_test::eventually([&] { return desktop_test::wallClock() > letIn; }));
  session_.server().signal(SIGSTOP);
  waitForLoss();
  session_.server().signal(SIGCONT);
  EXPECT_TRUE(comesToCount());
  EXPECT_TRUE(counts());
}

TEST_F(X11GrabTest, ServerThatIsNotThereIsWaitedFor) {
  observer_.reset();
  session_.killServer();
  begin();
  waitForLoss();
  EXPECT_EQ(presses_, 0);
  session_.startServerAgain();
  observer_.emplace(session_.display());
  EXPECT_TRUE(comesToCount());
}

TEST(X11Grab, IsNoneWithoutADisplayOrALetter) {
  const auto loop = makeMainLoop();
  EXPECT_EQ(makeX11Grab("", kSuperShiftZ, *loop, [] {}), nullptr);
  EXPECT_EQ(makeX11Grab(":0", {0x24, cmdKey}, *loop, [] {}), nullptr);
}

}  // namespace
}  // namespace orvane::host::hotkey
