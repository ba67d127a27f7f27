// What becomes of a window that nobody sees when something changes around it, on a server without a
// desktop, which tells of it itself.

#include <gtest/gtest.h>

#include "x11_probe_board.h"

namespace orvane::desktop_test {
namespace {

constexpr std::uint32_t green = 0x208040;
constexpr std::uint32_t sand = 0xc0a060;
constexpr std::uint32_t plum = 0x603060;
constexpr PixelRect everything{0, 0, 1600, 900};

class OutOfSight : public testing::Test {
 protected:
  void SetUp() override {
    observer_.setRootPicture(green);
    ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
    ASSERT_TRUE(eventually([&] { return showsNow(observer_.grab()); }));
  }

  bool paintsNothingFor(Milliseconds span) {
    const auto before = probe_.timesSaid("painted");
    return throughout(span, [&] { return probe_.timesSaid("painted") == before; });
  }
  // Longer than a beat.
  bool comesToRest() {
    return eventually([&] { return paintsNothingFor(Milliseconds(1300)); });
  }
  void changeEverything() {
    observer_.setRootPicture(plum);
    EXPECT_TRUE(paintsNothingFor(Milliseconds(500)));
    const auto before = probe_.timesSaid("painted");
    observer_.setResources("Xft.dpi: 192\n");
    EXPECT_TRUE(eventually([&] { return probe_.timesSaid("screens changed") == 1; }));
    EXPECT_TRUE(paintsNothingFor(Milliseconds(100)));
    EXPECT_EQ(probe_.timesSaid("painted"), before);
  }
  // The new number in the new size over the new picture.
  void expectAllNew() {
    constexpr PixelPoint onEdge{2 * boardArea.x + 8, 2 * boardArea.y + 8};
    EXPECT_TRUE(eventually([&] {
      const auto now = observer_.grab();
      return showsNow(now, {}, 2) && alike(now.at(onEdge.x, onEdge.y), mixedWithBoard(plum));
    }));
  }

  Session session_;
  Observer observer_{session_.display()};
  Probe probe_{session_, {"--tells-paintings"}};
};

TEST_F(OutOfSight, ACoveredWindowIsNotPaintedWhateverChangesAndIsRightAfterwards) {
  const auto cover = observer_.openWindow(everything, sand);
  ASSERT_TRUE(comesToRest());
  changeEverything();
  observer_.closeWindow(cover);
  expectAllNew();
}

TEST_F(OutOfSight, AWindowOnABlankScreenIsNotPaintedWhateverChangesAndIsRightAfterwards) {
  ASSERT_EQ(session_.start({"xset", "s", "activate"})->waitForEnd(), 0);
  ASSERT_TRUE(comesToRest());
  changeEverything();
  ASSERT_EQ(session_.start({"xset", "s", "reset"})->waitForEnd(), 0);
  expectAllNew();
}

// Nothing covers the window's new place.
TEST_F(OutOfSight, ACoveredWindowMovesWithItsScreen) {
  observer_.openWindow({0, 0, 700, 700}, sand);
  ASSERT_TRUE(comesToRest());
  ASSERT_EQ(session_.start({"xrandr", "--setmonitor", "MOVED", "800/300x900/300+800+0", "screen"})
                ->waitForEnd(),
            0);
  EXPECT_TRUE(eventually([&] { return showsNow(observer_.grab(), {800, 0}); }));
}

}  // namespace
}  // namespace orvane::desktop_test
