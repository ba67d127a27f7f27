#include "app/app_delegate_fixture.h"

namespace orvane {
namespace {

using AppDelegateTest = AppDelegateFixture;

// Writes down among the operations when work is asked for, and hands it to the actor of the test.
class RecordingActor final : public MainActor {
 public:
  RecordingActor(MainActor& actor, Operations& operations)
      : actor_(actor), operations_(operations) {}
  ~RecordingActor() override { tasks().destroyAll(); }

  void post(std::function<void()> work) override {
    operations_.emplace_back("turn asked for");
    actor_.post(std::move(work));
  }
  Subscription after(Duration delay, std::function<void()> work) override {
    return actor_.after(delay, std::move(work));
  }
  void runOnWorker(std::function<void()> work) override { actor_.runOnWorker(std::move(work)); }
  [[nodiscard]] Date now() const override { return actor_.now(); }

 private:
  MainActor& actor_;
  Operations& operations_;
};

TEST_F(AppDelegateTest, BeforeTheLaunchThereAreOnlySettings) {
  defaults_.values["DashboardSettings.themeMode"] = std::string("dark");
  EXPECT_EQ(*delegate().settings()->themeMode, DashboardThemeMode::dark);
  actor_.advance(std::chrono::seconds(10));
  EXPECT_EQ(delegate().wallpaperWindowController(), nullptr);
  EXPECT_TRUE(server_.operations.empty());
  EXPECT_TRUE(store_->calls.empty());
}

// The task manager is seen by the turns that it asks for: one for the first refresh, one for the
// wait for the next day.
TEST_F(AppDelegateTest, LaunchRunsInOrderWithSixPlacements) {
  RecordingActor actor(actor_, server_.operations);
  const auto delegate = AppDelegate::create(environment(actor));
  delegate->applicationDidFinishLaunching();
  const Operations placed = {"window 1: frame, display", "window 1: back"};
  Operations expected = {"policy 1", "store made", "window 1: made", "window 1: content"};
  const auto place = [&] { expected.insert(expected.end(), placed.begin(), placed.end()); };
  place();  // by the controller's own making
  expected.insert(expected.end(), {"install handler", "register hot key"});
  for (int run = 0; run < 3; ++run) place();
  expected.emplace_back("window 1: back");
  for (int run = 0; run < 2; ++run) place();
  expected.insert(expected.end(), {"status item", "turn asked for", "turn asked for"});
  EXPECT_EQ(server_.operations, expected);
  EXPECT_EQ(placements(), 6);
}

TEST_F(AppDelegateTest, LaunchStartsTheTaskManagerLast) {
  store_->eventAccess.status = EKAuthorizationStatus::notDetermined;
  launch();
  EXPECT_TRUE(store_->calls.empty());
  actor_.runUntilIdle();
  EXPECT_EQ(store_->calls.front(), "request events");
  EXPECT_TRUE(delegate().taskManager()->lastRefreshDate.get().has_value());
}

TEST_F(AppDelegateTest, TheTaskManagerIsMadeOnceAndSharedByEveryView) {
  const auto early = delegate().taskManager();
  server_.attach("right", {1920, 0, 1280, 720}, 22);
  delegate().settings()->displayMode = DashboardDisplayMode::all;
  launch();
  EXPECT_EQ(delegate().taskManager(), early);
  EXPECT_EQ(std::count(server_.operations.begin(), server_.operations.end(), "store made"), 1);
  ASSERT_EQ(server_.visibleWindows(), (std::vector<int>{1, 2}));
  EXPECT_NE(&board(1), &board(2));
  const Date start = actor_.now() + 60;
  early->events = std::vector<DashboardEvent>{{"e", "Talk", "Work", "work", start, start, false}};
  for (const int window : {1, 2}) {
    EXPECT_EQ(board(window).currentNextDeadline(actor_.now())->id, "event-e");
  }
  delegate().settings()->countdownIncludesEvents = false;
  for (const int window : {1, 2}) {
    EXPECT_EQ(board(window).currentNextDeadline(actor_.now()), std::nullopt);
  }
}

TEST_F(AppDelegateTest, LaunchPlacesByTheStoredSettings) {
  server_.attach("right", {1920, 0, 1280, 720}, 22);
  defaults_.values["DashboardSettings.displayMode"] = std::string("selected");
  defaults_.values["DashboardSettings.selectedDisplayID"] = std::string("22");
  defaults_.values["DashboardSettings.showOnAllSpaces"] = false;
  launch();
  EXPECT_EQ(server_.window(1)->frame(), (Rect{1920, 0, 1280, 720}));
  EXPECT_EQ(server_.window(1)->properties.collectionBehavior, 0x50u);
}

// The launch takes the primary window before it places once more, and orders back the window taken.
TEST_F(AppDelegateTest, TheWindowTakenBeforeThePlacementIsOrderedBack) {
  launch();
  const auto& operations = server_.operations;
  int backs = 0;
  for (const auto& operation : operations) backs += operation == "window 1: back" ? 1 : 0;
  EXPECT_EQ(backs, 7);
}

TEST_F(AppDelegateTest, ALaunchWithoutScreensPlacesNothingAndStillStartsTheTaskManager) {
  server_.attached.clear();
  launch();
  EXPECT_EQ(server_.operations,
            (Operations{"policy 1", "store made", "window 1: made", "window 1: content",
                        "install handler", "register hot key", "window 1: back", "status item"}));
  EXPECT_TRUE(server_.window(1)->frame().isEmpty());
  EXPECT_EQ(statusBar_.items.size(), 1U);
  actor_.runUntilIdle();
  EXPECT_TRUE(delegate().taskManager()->lastRefreshDate.get().has_value());
}

TEST_F(AppDelegateTest, TheFirstScreenAfterALaunchWithoutScreensGetsTheBoard) {
  server_.attached.clear();
  launch();
  server_.attach("late", {0, 0, 1280, 720}, 33);
  center_.post(NSApplicationDidChangeScreenParametersNotification);
  actor_.runUntilIdle();
  EXPECT_EQ(server_.window(1)->frame(), (Rect{0, 0, 1280, 720}));
  EXPECT_EQ(server_.made, 1);
}

TEST_F(AppDelegateTest, PlacementSettingsPlaceAtOnce) {
  launch();
  server_.operations.clear();
  delegate().settings()->showOnAllSpaces = false;
  EXPECT_EQ(placements(), 1);
  EXPECT_EQ(server_.window(1)->properties.collectionBehavior, 0x50u);
  delegate().settings()->displayMode = DashboardDisplayMode::selected;
  EXPECT_EQ(placements(), 2);
  delegate().settings()->selectedDisplayID = "11";
  EXPECT_EQ(placements(), 3);
}

TEST_F(AppDelegateTest, ModeAndScreenChangedTogetherEndOnTheChosenScreen) {
  server_.attach("right", {1920, 0, 1280, 720}, 22);
  launch();
  delegate().settings()->displayMode = DashboardDisplayMode::selected;
  delegate().settings()->selectedDisplayID = "22";
  EXPECT_EQ(server_.window(1)->frame(), (Rect{1920, 0, 1280, 720}));
  EXPECT_EQ(server_.visibleWindows(), std::vector<int>{1});
}

TEST_F(AppDelegateTest, OtherSettingsPlaceNothing) {
  launch();
  server_.operations.clear();
  auto& settings = *delegate().settings();
  settings.launchAtLogin = true;
  settings.toggleCalendar("work");
  settings.toggleReminderList("home");
  settings.countdownIncludesEvents = false;
  settings.countdownIncludesReminders = false;
  settings.countdownIncludesAllDayEvents = true;
  settings.ignoredWordsText = "gym";
  settings.primaryColorHex = "#000000";
  settings.glassOpacity = 0.5;
  settings.themeMode = DashboardThemeMode::light;
  settings.urgencyTinting = false;
  settings.hideDesktopIconsInFocus = false;
  settings.focusMode = true;
  actor_.advance(std::chrono::seconds(10));
  EXPECT_TRUE(server_.operations.empty());
}

TEST_F(AppDelegateTest, SettingsChangedAfterTheDelegateIsGonePlaceNothing) {
  launch();
  const auto settings = delegate().settings();
  delegate_.reset();
  server_.operations.clear();
  settings->showOnAllSpaces = false;
  settings->displayMode = DashboardDisplayMode::all;
  EXPECT_TRUE(server_.operations.empty());
}

TEST_F(AppDelegateTest, DestroyingTheDelegateEndsEverythingPending) {
  launch();
  actor_.runUntilIdle();
  delegate_.reset();
  actor_.runUntilIdle();
  EXPECT_EQ(actor_.tasks().size(), 0u);
  EXPECT_EQ(actor_.pendingTimers(), 0u);
  EXPECT_TRUE(server_.visibleWindows().empty());
}

}  // namespace
}  // namespace orvane
