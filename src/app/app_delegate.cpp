#include "app/app_delegate.h"

#include <utility>

#include "dashboard/wallpaper_dashboard_view.h"

namespace orvane {

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
  makeWallpaperWindows();
  placeWallpaperWindows();
  followPlacementSettings();
  taskManager()->start();
}

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

void AppDelegate::placeWallpaperWindows() {
  auto& controller = *wallpaperWindowController_;
  controller.setJoinsAllSpaces(*settings_->showOnAllSpaces);
  controller.setDisplaySelection(*settings_->displayMode, *settings_->selectedDisplayID);
  if (const auto window = controller.window()) {
    controller.syncToScreens();
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

}  // namespace orvane
