#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "linux/wayland/desk.h"
#include "linux/wayland/fake_kwin.h"

namespace orvane::host::wayland {
namespace {

using testing::SizeIs;

// More seconds than a window takes to settle, and than pass until a second connection is trusted.
constexpr int untilItRests = 20;

class ReadingRestTest : public Desk {
 protected:
  ReadingRestTest() : Desk(byName()) {}

  void showUntilItRests() {
    compositor.releasesAtOnce = true;
    show();
    tick(untilItRests);
    ASSERT_TRUE(compositor.hasUnreadAnswers());
  }

 private:
  static fakes::FakeCompositor::Offers byName() {
    fakes::FakeCompositor::Offers offers;
    offers.byName = true;
    return offers;
  }
};

TEST_F(ReadingRestTest, TheAnswersToAPictureLieUntilTheNextSecond) {
  showUntilItRests();
  for (int second = 0; second < 5; ++second) {
    const auto before = pictures().size();
    tick();
    EXPECT_TRUE(compositor.hasUnreadAnswers());
    EXPECT_EQ(pictures().size(), before + 1);
    EXPECT_EQ(lastPicture().pixels, painted(instant, 1, {60, 40}, 300, 100));
  }
}

TEST_F(ReadingRestTest, AChangeBetweenTwoSecondsIsDrawnAtOnce) {
  showUntilItRests();
  view->surface = Color::srgb(0.9, 0.1, 0.1);
  view->willChange.send();
  settle();
  EXPECT_EQ(lastPicture().pixels, painted(instant, 1, {60, 40}, 300, 100));
}

TEST_F(ReadingRestTest, AnotherSizeIsGrantedAndDrawnAtOnce) {
  showUntilItRests();
  view->panel = {60, 40, 400, 120};
  view->willChange.send();
  settle();
  EXPECT_EQ(lastPicture().pixels, painted(instant, 1, {60, 40}, 400, 120));
}

TEST_F(ReadingRestTest, AScreenThatComesIsHeardOfAtOnce) {
  showUntilItRests();
  compositor.addOutput({.name = "DP-2", .x = 1280});
  settle();
  EXPECT_THAT(server->screens(), SizeIs(2));
  EXPECT_FALSE(compositor.hasUnreadAnswers());
}

TEST_F(ReadingRestTest, AScreenThatChangesOrGoesIsHeardOfAtOnce) {
  auto& other = compositor.addOutput({.name = "DP-2", .x = 1280});
  showUntilItRests();
  compositor.changeOutput(other, {.name = "DP-2", .x = 1280, .width = 1920, .height = 1080});
  settle();
  EXPECT_EQ(server->screens().front().frame.width, 1920);
  tick(untilItRests);
  ASSERT_TRUE(compositor.hasUnreadAnswers());
  compositor.removeOutput(other);
  settle();
  EXPECT_THAT(server->screens(), SizeIs(1));
}

TEST_F(ReadingRestTest, AfterAChangeEverythingIsReadForAWhile) {
  auto& output = compositor.addOutput({.name = "DP-2", .x = 1280});
  showUntilItRests();
  compositor.changeOutput(output, {.name = "DP-2", .x = 1280, .scale = 2});
  settle();
  tick();
  EXPECT_FALSE(compositor.hasUnreadAnswers());
  tick(5);
  EXPECT_TRUE(compositor.hasUnreadAnswers());
}

TEST_F(ReadingRestTest, AnotherOrderOfTheScreensIsHeardOfAtOnce) {
  fakes::FakeKWin kwin(compositor, 14);
  compositor.addOutput({.name = "DP-2", .x = 1280});
  kwin.tellOrder({"DP-1", "DP-2"});
  showUntilItRests();
  EXPECT_EQ(server->mainScreen()->frame.x, 0);
  kwin.tellOrder({"DP-2", "DP-1"});
  settle();
  EXPECT_EQ(server->mainScreen()->frame.x, 1280);
}

TEST_F(ReadingRestTest, WithoutItsSecondConnectionEverythingIsRead) {
  showUntilItRests();
  compositor.breakFurtherConnections();
  settle();
  for (int second = 0; second < untilItRests; ++second) {
    tick();
    EXPECT_FALSE(compositor.hasUnreadAnswers());
    EXPECT_EQ(lastPicture().pixels, painted(instant, 1, {60, 40}, 300, 100));
  }
  EXPECT_THAT(losses, SizeIs(0));
}

TEST_F(ReadingRestTest, WhileOneWindowIsNotSeenEverythingIsRead) {
  compositor.addOutput({.name = "DP-2", .x = 1280});
  showUntilItRests();
  const auto other = makeWindow({1280, 0, 1280, 720});
  compositor.showsAtOnce = false;
  other->orderBack();
  settle();
  compositor.showsAtOnce = true;
  for (int second = 0; second < untilItRests; ++second) {
    tick();
    surface(0).showFrame();
    settle();
    EXPECT_FALSE(compositor.hasUnreadAnswers());
  }
  other->close();
}

TEST_F(ReadingRestTest, ACompositorThatEndsIsHeardOfAtOnce) {
  showUntilItRests();
  compositor.breakConnection();
  settle();
  EXPECT_THAT(losses, SizeIs(1));
}

TEST_F(ReadingRestTest, WhoeverIsNotSeenHearsAtOnceWhenItIs) {
  showUntilItRests();
  compositor.showsAtOnce = false;
  tick(4);
  EXPECT_FALSE(compositor.hasUnreadAnswers());
  actor.advance(std::chrono::seconds(untilItRests + 4));
  const auto before = pictures().size();
  compositor.showsAtOnce = true;
  surface().showFrame();
  settle();
  ASSERT_EQ(pictures().size(), before + 1);
  EXPECT_EQ(lastPicture().pixels, painted(instant, 1, {60, 40}, 300, 100));
}

TEST_F(ReadingRestTest, WithoutAWindowEverythingIsRead) {
  showUntilItRests();
  window->close();
  settle();
  tick();
  window->orderBack();
  settle();
  EXPECT_FALSE(compositor.hasUnreadAnswers());
  EXPECT_EQ(compositor.surfaces().back()->pictures.size(), 1U);
}

class HandedOverTest : public Desk {};

TEST_F(HandedOverTest, AConnectionThatWasHandedOverIsTheOnlyOneAndIsRead) {
  compositor.releasesAtOnce = true;
  show();
  for (int second = 0; second < untilItRests; ++second) {
    tick();
    EXPECT_FALSE(compositor.hasUnreadAnswers());
  }
}

}  // namespace
}  // namespace orvane::host::wayland
