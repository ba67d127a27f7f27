#include "app/app_delegate_fixture.h"
#include "app/orvane_app.h"
#include "settings/settings_view.h"

namespace orvane {
namespace {

using SettingsWindowTest = AppDelegateFixture;

TEST_F(SettingsWindowTest, OpensInOrder) {
  launch();
  server_.operations.clear();
  delegate().openSettings();
  EXPECT_EQ(
      server_.operations,
      (Operations{"policy 1", "activate, ignoring others", "settings: made", "settings: centred",
                  "settings: content", "settings: shown", "settings: key and in front"}));
}

TEST_F(SettingsWindowTest, IsMadeAsItShouldBe) {
  launch();
  delegate().openSettings();
  const auto& window = *formWindows_.windows.at(0);
  EXPECT_EQ(window.contentRect, (Rect{0, 0, 760, 620}));
  EXPECT_EQ(window.styleMask, 32775U);
  EXPECT_EQ(window.backing, NSBackingStoreType::buffered);
  EXPECT_FALSE(window.deferred);
  EXPECT_EQ(window.title, "Orvane Settings");
  EXPECT_TRUE(window.titlebarAppearsTransparent);
  EXPECT_FALSE(window.isReleasedWhenClosed);
}

TEST_F(SettingsWindowTest, ShowsTheSharedSettingsAndTaskManager) {
  launch();
  delegate().openSettings();
  const auto& view = dynamic_cast<SettingsView&>(*formWindows_.windows.at(0)->content);
  EXPECT_EQ(view.settings(), delegate().settings());
  EXPECT_EQ(view.taskManager(), delegate().taskManager());
}

TEST_F(SettingsWindowTest, OpenedTwiceIsTheSameWindow) {
  launch();
  delegate().openSettings();
  server_.operations.clear();
  delegate().openSettings();
  EXPECT_EQ(formWindows_.windows.size(), 1U);
  EXPECT_EQ(server_.operations, (Operations{"policy 1", "activate, ignoring others",
                                            "settings: shown", "settings: key and in front"}));
}

TEST_F(SettingsWindowTest, OpenedBeforeTheLaunchSharesTheOneStore) {
  delegate().openSettings();
  launch();
  EXPECT_EQ(std::count(server_.operations.begin(), server_.operations.end(), "store made"), 1);
}

TEST_F(SettingsWindowTest, WhereNoWindowCanBeMadeNothingComesOfIt) {
  launch();
  formWindows_.missing = true;
  server_.operations.clear();
  delegate().openSettings();
  EXPECT_EQ(server_.operations, (Operations{"policy 1", "activate, ignoring others"}));
  formWindows_.missing = false;
  delegate().openSettings();
  EXPECT_EQ(formWindows_.windows.size(), 1U);
}

using OrvaneAppTest = AppDelegateFixture;

TEST_F(OrvaneAppTest, RunsFromLaunchToTermination) {
  const OrvaneApp app(environment());
  Operations& log = server_.operations;
  EXPECT_EQ(app.main([&] { log.emplace_back("loop"); }), 0);
  ASSERT_GE(log.size(), 3U);
  EXPECT_EQ(Operations(log.end() - 3, log.end()),
            (Operations{"status item", "loop", "status item removed"}));
}

TEST_F(OrvaneAppTest, TheSettingsSceneSharesWhatTheDelegateOwns) {
  const OrvaneApp app(environment());
  const auto scene = app.body();
  EXPECT_EQ(scene->settings(), app.appDelegate()->settings());
  EXPECT_EQ(scene->taskManager(), app.appDelegate()->taskManager());
  app.appDelegate()->applicationDidFinishLaunching();
  EXPECT_EQ(std::count(server_.operations.begin(), server_.operations.end(), "store made"), 1);
}

TEST_F(OrvaneAppTest, WithoutAnApplicationNothingRuns) {
  auto world = environment();
  world.application = nullptr;
  const auto orphan = AppDelegate::create(world);
  EXPECT_DEATH(orphan->applicationDidFinishLaunching(), "There is no application to run in.");
  EXPECT_DEATH(orphan->openSettings(), "There is no application to run in.");
  EXPECT_DEATH(orphan->quit(), "There is no application to run in.");
}

}  // namespace
}  // namespace orvane
