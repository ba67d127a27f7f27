#include "wallpaper/wallpaper_window_controller.h"

#include <algorithm>
#include <set>
#include <utility>

#include "wallpaper/screen_id.h"

namespace orvane {
namespace {

using Behavior = NSWindowCollectionBehavior;

constexpr unsigned restingBehavior = Behavior::stationary | Behavior::ignoresCycle;
// Until its first placement the primary window has these; configure() replaces both.
constexpr unsigned provisionalBehavior = restingBehavior | Behavior::canJoinAllSpaces;
constexpr std::int64_t provisionalLevel = 2;

std::unique_ptr<NSHostingView> hostingView(std::shared_ptr<RootView> rootView) {
  auto view = std::make_unique<NSHostingView>(std::move(rootView));
  view->translatesAutoresizingMaskIntoConstraints = true;
  view->wantsLayer = true;
  view->layerBackgroundColor = Color::clear();
  return view;
}

// Nothing but its content is seen of the window, and nobody can touch it.
void makeUnobtrusive(NSWindowProperties& properties) {
  properties.isReleasedWhenClosed = false;
  properties.titleVisibility = NSWindowTitleVisibility::hidden;
  properties.titlebarAppearsTransparent = true;
  properties.backgroundColor = Color::clear();
  properties.isOpaque = false;
  properties.hasShadow = false;
  properties.ignoresMouseEvents = true;
  properties.acceptsMouseMovedEvents = false;
  properties.animationBehavior = NSWindowAnimationBehavior::none;
  properties.hidesOnDeactivate = false;
  properties.canHide = false;
}

}  // namespace

std::shared_ptr<WallpaperWindowController> WallpaperWindowController::create(
    RootViewFactory rootViewFactory, Environment environment) {
  std::shared_ptr<WallpaperWindowController> controller(
      new WallpaperWindowController(std::move(rootViewFactory), environment));
  controller->followScreens();
  controller->syncToScreens();
  return controller;
}

std::shared_ptr<WallpaperWindowController> WallpaperWindowController::createHosting(
    std::function<std::shared_ptr<RootView>()> makeRootView, Environment environment) {
  return create([makeRootView = std::move(makeRootView)] { return hostingView(makeRootView()); },
                environment);
}

WallpaperWindowController::WallpaperWindowController(RootViewFactory rootViewFactory,
                                                     Environment environment)
    : environment_(environment),
      rootViewFactory_(std::move(rootViewFactory)),
      window_(makePrimaryWindow()) {}

std::shared_ptr<NSWindow> WallpaperWindowController::makePrimaryWindow() const {
  const auto mainScreen = environment_.windowServer.mainScreen();
  auto window = makeWindow(mainScreen ? mainScreen->frame : Rect{});
  makeUnobtrusive(window->properties);
  window->properties.collectionBehavior = provisionalBehavior;
  window->properties.level = provisionalLevel;
  window->setContentView(rootViewFactory_());
  return window;
}

std::shared_ptr<NSWindow> WallpaperWindowController::makeWindow(Rect contentRect) const {
  return environment_.windowServer.makeWindow(contentRect, NSWindowStyleMask::fullSizeContentView,
                                              NSBackingStoreType::buffered, false);
}

void WallpaperWindowController::followScreens() {
  screenObserver_ = environment_.notificationCenter.addObserver(
      NSApplicationDidChangeScreenParametersNotification,
      [weak = weak_from_this(), &actor = environment_.mainActor] {
        spawn(actor, syncLater(weak));
      });
}

Task<void> WallpaperWindowController::syncLater(std::weak_ptr<WallpaperWindowController> weak) {
  if (const auto controller = weak.lock()) controller->syncToScreens();
  co_return;
}

void WallpaperWindowController::setJoinsAllSpaces(bool joinsAllSpaces) {
  joinsAllSpaces_ = joinsAllSpaces;
  syncToScreens();
}

void WallpaperWindowController::setDisplaySelection(DashboardDisplayMode mode,
                                                    const std::string& selectedDisplayID) {
  displayMode_ = mode;
  selectedDisplayID_ = selectedDisplayID;
  syncToScreens();
}

void WallpaperWindowController::syncToScreens() {
  const auto screens = targetScreens();
  if (screens.empty()) return;
  closeWindowsElsewhere(screens);
  for (const auto& screen : screens) {
    const auto window = windowFor(screen);
    managedWindows_[screenID(screen)] = window;
    configure(*window, screen);
    window->orderBack();
  }
  window_ = managedWindows_.at(screenID(screens.front()));
}

void WallpaperWindowController::closeWindowsElsewhere(const std::vector<NSScreen>& screens) {
  std::set<std::string> ids;
  for (const auto& screen : screens) ids.insert(screenID(screen));
  for (auto entry = managedWindows_.begin(); entry != managedWindows_.end();) {
    if (ids.contains(entry->first)) {
      ++entry;
    } else {
      entry->second->close();
      entry = managedWindows_.erase(entry);
    }
  }
}

// The primary window is taken over only where a placement starts with no windows at all.
std::shared_ptr<NSWindow> WallpaperWindowController::windowFor(const NSScreen& screen) const {
  const auto managed = managedWindows_.find(screenID(screen));
  if (managed != managedWindows_.end()) return managed->second;
  if (managedWindows_.empty() && window_) return window_;
  auto window = makeWindow(screen.frame);
  window->setContentView(rootViewFactory_());
  return window;
}

void WallpaperWindowController::configure(NSWindow& window, const NSScreen& screen) const {
  makeUnobtrusive(window.properties);
  window.properties.level = boardLevel();
  window.properties.collectionBehavior =
      restingBehavior | (joinsAllSpaces_ ? Behavior::canJoinAllSpaces : 0);
  window.setFrame(screen.frame, true);
  if (NSHostingView* content = window.contentView()) {
    content->frame = {0, 0, screen.frame.width, screen.frame.height};
    content->autoresizingMask =
        NSAutoresizingMask::widthSizable | NSAutoresizingMask::heightSizable;
  }
}

// Above the desktop's picture, below its icons and every ordinary window. Subtracted in 64 bits,
// because a level may be the least that 32 bits hold.
std::int64_t WallpaperWindowController::boardLevel() const {
  const auto& server = environment_.windowServer;
  const std::int64_t backstop = server.windowLevelForKey(CGWindowLevelKey::backstopMenu);
  const std::int64_t desktop = server.windowLevelForKey(CGWindowLevelKey::desktopWindow);
  return std::min(backstop - 1, desktop);
}

std::vector<NSScreen> WallpaperWindowController::targetScreens() const {
  if (displayMode_ == DashboardDisplayMode::main) return mainScreenAlone();
  auto screens = environment_.windowServer.screens();
  if (displayMode_ == DashboardDisplayMode::all) return screens;
  const auto chosen = std::find_if(screens.begin(), screens.end(), [&](const NSScreen& screen) {
    return screenID(screen) == selectedDisplayID_;
  });
  return chosen != screens.end() ? std::vector{*chosen} : mainScreenAlone();
}

std::vector<NSScreen> WallpaperWindowController::mainScreenAlone() const {
  if (const auto main = environment_.windowServer.mainScreen()) return {*main};
  auto screens = environment_.windowServer.screens();
  screens.resize(std::min<std::size_t>(screens.size(), 1));
  return screens;
}

std::vector<DisplayOption> WallpaperWindowController::availableDisplays(
    const WindowServer& server) {
  return orvane::availableDisplays(server);
}

}  // namespace orvane
