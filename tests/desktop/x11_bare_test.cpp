// The windows on X servers without a desktop around them.

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

#include "x11_probe_board.h"

namespace orvane::desktop_test {
namespace {

constexpr std::uint32_t green = 0x208040;
constexpr std::uint32_t sand = 0xc0a060;

Picture filledWith(std::uint32_t colour) {
  return {1600, 900, std::vector<std::uint32_t>(std::size_t{1600} * 900, colour)};
}

// Lets no window be shown but by this client.
void beTheManager(const Observer& observer) {
  auto* connection = observer.connection();
  const std::uint32_t redirects = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
  xcb_change_window_attributes(connection, observer.root(), XCB_CW_EVENT_MASK, &redirects);
  const auto own = xcb_generate_id(connection);
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, own, observer.root(), -10, -10, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  for (const auto window : {observer.root(), own}) {
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window,
                        observer.atom("_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW, 32, 1, &own);
  }
  observer.sync();
}

// The next window that wishes to be shown; nothing when none does.
std::optional<xcb_window_t> nextWish(const Observer& observer) {
  std::optional<xcb_window_t> wished;
  eventually([&] {
    auto* event = xcb_poll_for_event(observer.connection());
    if (event != nullptr && event->response_type == XCB_MAP_REQUEST) {
      wished = reinterpret_cast<xcb_map_request_event_t*>(event)->window;
    }
    std::free(event);
    return wished.has_value() || xcb_connection_has_error(observer.connection()) != 0;
  });
  return wished;
}

class OnABareServer : public testing::Test {
 protected:
  void expectBoardOver(std::uint32_t colour) {
    EXPECT_TRUE(eventually([&] { return boardLiesOver(filledWith(colour), observer_.grab()); }));
    EXPECT_TRUE(eventually([&] { return showsNow(observer_.grab()); }));
  }

  // Makes a part of the root a monitor. One takes the server's only output, "screen", which would
  // be a monitor of its own otherwise; the others have none.
  void setMonitor(const std::string& name, const std::string& geometry, const std::string& output) {
    ASSERT_EQ(session_.start({"xrandr", "--setmonitor", name, geometry, output})->waitForEnd(), 0);
  }
  void deleteMonitor(const std::string& name) {
    ASSERT_EQ(session_.start({"xrandr", "--delmonitor", name})->waitForEnd(), 0);
  }

  Session session_;
  Observer observer_{session_.display()};
};

TEST_F(OnABareServer, DrawsTheRootPictureUnderneathAndFollowsIt) {
  observer_.setRootPicture(green);
  Probe probe(session_);
  ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
  expectBoardOver(green);
  observer_.setRootPicture(sand);
  expectBoardOver(sand);
  EXPECT_EQ(probe.process().output(), "");
}

TEST_F(OnABareServer, DrawsOnAnEvenGroundWhereThereIsNoRootPicture) {
  Probe probe(session_);
  ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
  expectBoardOver(0x202124);
}

TEST_F(OnABareServer, SurvivesARootPictureThatIsGone) {
  observer_.setRootPicture(green);
  const std::uint32_t nonsense = 0x1fffff;
  xcb_change_property(observer_.connection(), XCB_PROP_MODE_REPLACE, observer_.root(),
                      observer_.atom("_XROOTPMAP_ID"), XCB_ATOM_PIXMAP, 32, 1, &nonsense);
  observer_.sync();
  Probe probe(session_);
  ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
  expectBoardOver(0x202124);
  EXPECT_EQ(probe.process().output(), "");
}

// What is there when it is asked for and cannot be drawn from a moment later, as a window can never
// be.
TEST_F(OnABareServer, SurvivesARootPictureThatGoesWhileItIsRead) {
  const std::uint32_t window = observer_.openWindow({1590, 890, 10, 10}, sand);
  xcb_change_property(observer_.connection(), XCB_PROP_MODE_REPLACE, observer_.root(),
                      observer_.atom("_XROOTPMAP_ID"), XCB_ATOM_PIXMAP, 32, 1, &window);
  observer_.sync();
  Probe probe(session_);
  ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
  expectBoardOver(0x202124);
  observer_.setRootPicture(green);
  expectBoardOver(green);
  EXPECT_EQ(probe.process().output(), "");
}

TEST_F(OnABareServer, WindowIsUnmanagedAndAtTheBottom) {
  observer_.setRootPicture(green);
  const auto ordinary = observer_.openWindow({0, 0, 300, 300}, sand);
  Probe probe(session_);
  const auto boards = Probe::waitForBoards(observer_, 1);
  ASSERT_EQ(boards.size(), 1U);
  EXPECT_TRUE(boards[0].isUnmanaged);
  EXPECT_EQ(observer_.topLevels().front(), boards[0].id);
  EXPECT_EQ(observer_.grab().at(100, 100), sand);
  observer_.closeWindow(ordinary);
  expectBoardOver(green);
}

TEST_F(OnABareServer, DrawsNothingWhileItIsCoveredAndIsRightAtOnceAfterwards) {
  observer_.setRootPicture(green);
  Probe probe(session_);
  const auto boards = Probe::waitForBoards(observer_, 1);
  ASSERT_EQ(boards.size(), 1U);
  expectBoardOver(green);
  const auto cover = observer_.openWindow({0, 0, 500, 500}, sand);
  DamageWatch watch(session_.display(), boards[0].id);
  watch.until(wallClock() + 0.5);
  const auto before = watch.until(wallClock()).size();
  EXPECT_EQ(watch.until(wallClock() + 2.5).size(), before);
  observer_.closeWindow(cover);
  expectBoardOver(green);
}

TEST_F(OnABareServer, FollowsMonitorsThatComeAndGo) {
  observer_.setRootPicture(green);
  setMonitor("LEFT", "800/300x900/300+0+0", "screen");
  setMonitor("RIGHT", "800/300x900/300+800+0", "none");
  Probe probe(session_);
  auto boards = Probe::waitForBoards(observer_, 2);
  ASSERT_EQ(boards.size(), 2U);
  EXPECT_EQ(boards[1].onRoot.x - boards[0].onRoot.x, 800);
  EXPECT_TRUE(eventually([&] {
    const auto picture = observer_.grab();
    return showsNow(picture) && showsNow(picture, {800, 0});
  }));
  const auto leftBoard = boards[0].id;
  deleteMonitor("RIGHT");
  boards = Probe::waitForBoards(observer_, 1);
  ASSERT_EQ(boards.size(), 1U);
  EXPECT_EQ(boards[0].id, leftBoard) << "the screen that stayed keeps its window";
  setMonitor("RIGHT", "800/300x800/300+800+100", "none");
  boards = Probe::waitForBoards(observer_, 2);
  ASSERT_EQ(boards.size(), 2U);
  EXPECT_TRUE(eventually([&] { return showsNow(observer_.grab(), {800, 100}); }));
}

TEST_F(OnABareServer, FollowsTheScaleOfTheResources) {
  observer_.setRootPicture(green);
  Probe probe(session_);
  ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
  expectBoardOver(green);
  observer_.setResources("Xft.antialias:\t1\nXft.dpi:\t192\n");
  EXPECT_TRUE(eventually([&] { return showsNow(observer_.grab(), {}, 2); }));
  observer_.setResources("");
  expectBoardOver(green);
}

TEST_F(OnABareServer, AnnouncesABurstOfChangesOnce) {
  Probe probe(session_);
  ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
  for (int dpi = 97; dpi < 117; ++dpi) {
    observer_.setResources("Xft.dpi: " + std::to_string(dpi) + "\n");
  }
  observer_.setResources("Xft.dpi: 192\n");
  ASSERT_TRUE(eventually([&] { return showsNow(observer_.grab(), {}, 2); }));
  // On a slow machine the burst may fall apart, but never into its single changes.
  const auto& output = probe.process().output();
  const std::string line = "screens changed\n";
  EXPECT_EQ(output.find(line), 0U);
  EXPECT_LT(output.size(), 4 * line.size());
}

TEST_F(OnABareServer, BecomesManagedWhenAWindowManagerComes) {
  observer_.setRootPicture(green);
  Probe probe(session_);
  ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
  session_.startWindowManager(false);
  EXPECT_TRUE(eventually([&] {
    const auto boards = Probe::boards(observer_);
    return boards.size() == 1 && !boards[0].isUnmanaged;
  }));
  expectBoardOver(green);
  session_.endWindowManager();
  EXPECT_TRUE(eventually([&] {
    const auto boards = Probe::boards(observer_);
    return boards.size() == 1 && boards[0].isUnmanaged;
  }));
  expectBoardOver(green);
}

// One that has just come, and does not yet hear what windows wish.
TEST_F(OnABareServer, WishesToBeShownAgainWhereAWindowManagerMissedIt) {
  const Observer manager(session_.display());
  beTheManager(manager);
  Probe probe(session_);
  const auto missed = nextWish(manager);
  ASSERT_TRUE(missed);
  const auto heard = nextWish(manager);
  ASSERT_TRUE(heard);
  EXPECT_NE(*heard, *missed);
  xcb_map_window(manager.connection(), *heard);
  manager.sync();
  expectBoardOver(0x202124);
  EXPECT_EQ(Probe::boards(observer_).size(), 1U);
  EXPECT_EQ(probe.process().output(), "");
}

TEST_F(OnABareServer, SaysOnceThatTheServerIsGone) {
  Probe probe(session_);
  ASSERT_EQ(Probe::waitForBoards(observer_, 1).size(), 1U);
  session_.endServer();
  EXPECT_EQ(probe.process().waitForEnd(), 3);
  EXPECT_EQ(probe.process().output(), "x11_probe: The connection to the X server is lost.\n");
}

TEST(WithoutSharedMemory, BoardIsDrawnThroughTheConnection) {
  const Session session({"-extension", "MIT-SHM"});
  const Observer observer(session.display());
  observer.setRootPicture(sand);
  Probe probe(session);
  ASSERT_EQ(Probe::waitForBoards(observer, 1).size(), 1U);
  EXPECT_TRUE(eventually([&] { return boardLiesOver(filledWith(sand), observer.grab()); }));
  EXPECT_TRUE(eventually([&] { return showsNow(observer.grab()); }));
  EXPECT_EQ(probe.process().output(), "");
}

TEST(WithoutMonitors, TheRootIsTheScreen) {
  const Session session({"-extension", "RANDR"});
  const Observer observer(session.display());
  observer.setRootPicture(sand);
  Probe probe(session);
  ASSERT_EQ(Probe::waitForBoards(observer, 1).size(), 1U);
  EXPECT_TRUE(eventually([&] { return boardLiesOver(filledWith(sand), observer.grab()); }));
}

TEST(WithoutAServer, SaysWhy) {
  ChildProcess probe({Probe::path()}, {{"DISPLAY", ":65431"}});
  EXPECT_EQ(probe.waitForEnd(), 1);
  EXPECT_EQ(probe.output(), "x11_probe: The X display :65431 cannot be opened.\n");
  ChildProcess other({Probe::path()}, {{"DISPLAY", ""}});
  EXPECT_EQ(other.waitForEnd(), 1);
  EXPECT_EQ(other.output(), "x11_probe: No X display is named by DISPLAY.\n");
}

}  // namespace
}  // namespace orvane::desktop_test
