#include "app/app_delegate_fixture.h"

namespace orvane {
namespace {

class StatusMenuTest : public AppDelegateFixture {
 protected:
  const fakes::MemoryStatusBar::Shown& item() const { return *statusBar_.items.at(0); }
  void choose(const std::string& title) {
    for (const auto& each : item().menu.itemArray) {
      if (each.title == title) return each.choose();
    }
    FAIL() << "no item is called " << title;
  }
};

TEST_F(StatusMenuTest, TheItemShowsTheTimerAlone) {
  launch();
  ASSERT_EQ(statusBar_.items.size(), 1U);
  EXPECT_EQ(item().length, -1);
  EXPECT_EQ(item().image, (NSImage{"timer", "Orvane"}));
  EXPECT_EQ(item().position, NSCellImagePosition::imageOnly);
}

TEST_F(StatusMenuTest, TheMenuHasThreeCommandsAndASeparator) {
  launch();
  Operations rows;
  for (const auto& each : item().menu.itemArray) {
    const std::string separator = each.isSeparatorItem ? "separator" : "";
    rows.push_back(separator + each.title + "|" + each.action + "|" + each.keyEquivalent);
  }
  EXPECT_EQ(rows, (Operations{"Settings...|openSettings|,", "Refresh Now|refreshNow|r",
                              "separator||", "Quit|quit|q"}));
}

TEST_F(StatusMenuTest, EveryItemOfTheMenuTargetsTheDelegate) {
  launch();
  for (const auto& each : item().menu.itemArray) {
    EXPECT_EQ(each.target.lock().get(), delegate_.get()) << each.title;
  }
}

TEST_F(StatusMenuTest, WithoutAButtonTheMenuIsStillThere) {
  statusBar_.hasButtons = false;
  launch();
  EXPECT_EQ(item().image, std::nullopt);
  EXPECT_EQ(item().menu.itemArray.size(), 4U);
}

TEST_F(StatusMenuTest, WithoutTheSymbolTheButtonHasNoImage) {
  statusBar_.hasSymbols = false;
  launch();
  EXPECT_EQ(item().image, std::nullopt);
  EXPECT_EQ(item().position, NSCellImagePosition::imageOnly);
}

TEST_F(StatusMenuTest, RefreshNowRefreshesAndPlacesTheBoard) {
  launch();
  actor_.advance(std::chrono::seconds(10));
  const auto before = delegate().taskManager()->lastRefreshDate.get();
  server_.operations.clear();
  choose("Refresh Now");
  EXPECT_EQ(server_.operations,
            (Operations{"window 1: frame, display", "window 1: back", "window 1: back"}));
  actor_.advance(std::chrono::seconds(10));
  EXPECT_GT(delegate().taskManager()->lastRefreshDate.get(), before);
}

TEST_F(StatusMenuTest, RefreshNowTwiceInQuickSuccessionEndsInOneRefresh) {
  launch();
  actor_.advance(std::chrono::seconds(10));
  store_->calls.clear();
  choose("Refresh Now");
  choose("Refresh Now");
  actor_.advance(std::chrono::seconds(10));
  const auto once = store_->calls;
  store_->calls.clear();
  choose("Refresh Now");
  actor_.advance(std::chrono::seconds(10));
  EXPECT_FALSE(once.empty());
  EXPECT_EQ(store_->calls, once);
}

TEST_F(StatusMenuTest, RefreshNowBringsBackABoardThatWasTakenAway) {
  launch();
  server_.window(1)->close();
  EXPECT_TRUE(server_.visibleWindows().empty());
  choose("Refresh Now");
  EXPECT_EQ(server_.visibleWindows(), std::vector<int>{1});
}

TEST_F(StatusMenuTest, BeforeTheLaunchRefreshNowPlacesNothing) {
  delegate().refreshNow();
  EXPECT_EQ(server_.operations, Operations{"store made"});
}

TEST_F(StatusMenuTest, SettingsOpensTheWindow) {
  launch();
  choose("Settings...");
  ASSERT_EQ(formWindows_.windows.size(), 1U);
  EXPECT_TRUE(formWindows_.windows.front()->visible);
}

TEST_F(StatusMenuTest, QuitAsksTheApplicationToTerminate) {
  launch();
  server_.operations.clear();
  choose("Quit");
  EXPECT_EQ(server_.operations, Operations{"terminate"});
}

TEST_F(StatusMenuTest, OtherActionsDoNothing) {
  launch();
  server_.operations.clear();
  delegate().perform("");
  delegate().perform("launchMissiles");
  EXPECT_TRUE(server_.operations.empty());
}

TEST_F(StatusMenuTest, AMenuThatOutlivesTheDelegateDoesNothing) {
  launch();
  const auto menu = item().menu;
  delegate_.reset();
  server_.operations.clear();
  for (const auto& each : menu.itemArray) each.choose();
  EXPECT_TRUE(server_.operations.empty());
}

TEST_F(StatusMenuTest, TerminatingTakesTheItemAwayAndNothingElse) {
  launch();
  server_.operations.clear();
  delegate().applicationWillTerminate();
  EXPECT_EQ(server_.operations, Operations{"status item removed"});
  EXPECT_EQ(hotKeys_.hotKeys.size(), 1U);
  EXPECT_EQ(server_.visibleWindows(), std::vector<int>{1});
}

TEST_F(StatusMenuTest, QuittingInFocusModeLeavesTheIconsHidden) {
  delegate().settings()->hideDesktopIconsInFocus = true;
  delegate().settings()->focusMode = true;
  launch();
  EXPECT_EQ(scripts_.run.size(), 1U);
  delegate().applicationWillTerminate();
  delegate_.reset();
  EXPECT_EQ(scripts_.run.size(), 1U);
}

}  // namespace
}  // namespace orvane
