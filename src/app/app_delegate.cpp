#include "app/app_delegate.h"

#include <map>
#include <utility>

#include "dashboard/wallpaper_dashboard_view.h"
#include "foundation/fatal_error.h"

namespace orvane {
namespace {

constexpr Rect kSettingsContent{0, 0, 760, 620};
constexpr unsigned kSettingsStyle = FormWindowStyleMask::titled | FormWindowStyleMask::closable |
                                    FormWindowStyleMask::miniaturizable |
                                    NSWindowStyleMask::fullSizeContentView;

}  // namespace

std::shared_ptr<AppDelegate> AppDelegate::create(Environment environment) {
  return std::shared_ptr<AppDelegate>(new AppDelegate(std::move(environment)));
}

AppDelegate::AppDelegate(Environment environment)
    : environment_(std::move(environment)),
      settings_(std::make_shared<DashboardSettings>(environment_.userDefaults,
                                                    environment_.appService)) {}

// Placement runs six times on the way. It costs little and is idempotent, and each run belongs to
// the step that asks for it.
void AppDelegate::applicationDidFinishLaunching() {
  sharedApplication().setActivationPolicy(NSApplicationActivationPolicy::accessory);
  makeWallpaperWindows();
  makeFocusHotKey();
  placeWallpaperWindows();
  followPlacementSettings();
  configureStatusItem();
  taskManager()->start();
}

void AppDelegate::applicationWillTerminate() { statusItem_.reset(); }

const std::shared_ptr<TaskManager>& AppDelegate::taskManager() {
  if (!taskManager_) {
    taskManager_ = TaskManager::create(settings_, environment_.makeEventStore(),
                                       {environment_.mainActor, environment_.notificationCenter,
                                        environment_.calendar, environment_.locale});
  }
  return taskManager_;
}

void AppDelegate::makeWallpaperWindows() {
  const DashboardEnvironment board{environment_.locale, environment_.calendar,
                                   [&actor = environment_.mainActor] { return actor.now(); }};
  auto makeRootView = [manager = taskManager(), settings = settings_, board] {
    return std::make_shared<WallpaperDashboardView>(manager, settings, board);
  };
  wallpaperWindowController_ = WallpaperWindowController::createHosting(
      std::move(makeRootView),
      {environment_.windowServer, environment_.notificationCenter, environment_.mainActor});
}

void AppDelegate::makeFocusHotKey() {
  focusHotKeyController_ = FocusHotKeyController::create(
      settings_, {environment_.hotKeys, environment_.scripts, environment_.mainActor});
}

void AppDelegate::placeWallpaperWindows() {
  auto& controller = *wallpaperWindowController_;
  controller.setJoinsAllSpaces(*settings_->showOnAllSpaces);
  controller.setDisplaySelection(*settings_->displayMode, *settings_->selectedDisplayID);
  replacePrimaryWindow();
}

// The window is taken before the placement, which may make another one the primary.
void AppDelegate::replacePrimaryWindow() {
  if (!wallpaperWindowController_) return;
  if (const auto window = wallpaperWindowController_->window()) {
    wallpaperWindowController_->syncToScreens();
    window->orderBack();
  }
}

void AppDelegate::followPlacementSettings() {
  const auto withController = [weak = weak_from_this()](auto&& act) {
    const auto self = weak.lock();
    if (self && self->wallpaperWindowController_) act(*self->wallpaperWindowController_);
  };
  cancellables_.push_back(settings_->showOnAllSpaces.subscribe([withController](bool joins) {
    withController([joins](auto& controller) { controller.setJoinsAllSpaces(joins); });
  }));
  cancellables_.push_back(combineLatest<DashboardDisplayMode, std::string>(
      settings_->displayMode, settings_->selectedDisplayID,
      [withController](const DashboardDisplayMode& mode, const std::string& selectedDisplayID) {
        withController(
            [&](auto& controller) { controller.setDisplaySelection(mode, selectedDisplayID); });
      }));
}

void AppDelegate::configureStatusItem() {
  auto item = environment_.statusBar.statusItem(NSVariableStatusItemLength);
  if (auto* button = item->button()) {
    button->setImage(environment_.statusBar.image("timer", "Orvane"));
    button->setImagePosition(NSCellImagePosition::imageOnly);
  }
  item->setMenu(statusMenu());
  statusItem_ = std::move(item);
}

NSMenu AppDelegate::statusMenu() {
  NSMenu menu;
  menu.addItem({"Settings...", "openSettings", ",", false, {}});
  menu.addItem({"Refresh Now", "refreshNow", "r", false, {}});
  menu.addItem(NSMenuItem::separator());
  menu.addItem({"Quit", "quit", "q", false, {}});
  for (auto& item : menu.itemArray) item.target = weak_from_this();
  return menu;
}

void AppDelegate::perform(const std::string& action) {
  using Operation = void (AppDelegate::*)();
  static const std::map<std::string, Operation, std::less<>> operations = {
      {"openSettings", &AppDelegate::openSettings},
      {"refreshNow", &AppDelegate::refreshNow},
      {"quit", &AppDelegate::quit}};
  const auto found = operations.find(action);
  if (found != operations.end()) (this->*found->second)();
}

void AppDelegate::openSettings() {
  sharedApplication().setActivationPolicy(NSApplicationActivationPolicy::accessory);
  sharedApplication().activate(true);
  if (!settingsWindowController_) settingsWindowController_ = makeSettingsWindow();
  if (!settingsWindowController_) return;
  settingsWindowController_->showWindow();
  settingsWindowController_->window()->makeKeyAndOrderFront();
}

std::unique_ptr<NSWindowController> AppDelegate::makeSettingsWindow() {
  const auto window = environment_.formWindowServer.makeFormWindow(
      kSettingsContent, kSettingsStyle, NSBackingStoreType::buffered, false);
  if (!window) return nullptr;
  window->title = "Orvane Settings";
  window->titlebarAppearsTransparent = true;
  window->isReleasedWhenClosed = false;
  window->center();
  window->setContentView(makeSettingsView());
  return std::make_unique<NSWindowController>(window);
}

std::shared_ptr<SettingsView> AppDelegate::makeSettingsView() {
  return SettingsView::create(settings_, taskManager(),
                              {environment_.windowServer, environment_.notificationCenter,
                               environment_.mainActor, environment_.locale});
}

void AppDelegate::refreshNow() {
  taskManager()->scheduleRefresh();
  replacePrimaryWindow();
}

void AppDelegate::quit() { sharedApplication().terminate(); }

NSApplication& AppDelegate::sharedApplication() const {
  if (!environment_.application) fatalError("There is no application to run in.");
  return *environment_.application;
}

}  // namespace orvane
