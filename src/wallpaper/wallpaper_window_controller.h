#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "foundation/main_actor.h"
#include "foundation/subscription.h"
#include "foundation/task.h"
#include "platform/notification_center.h"
#include "platform/ns_window.h"
#include "settings/display_mode.h"
#include "wallpaper/display_option.h"

namespace orvane {

// Keeps one borderless, click-through window at desktop level on each screen that should show the
// board. Windows of screens that stay targets are reused, so that placement may run as often as
// anybody likes. Main thread only.
class WallpaperWindowController : public std::enable_shared_from_this<WallpaperWindowController> {
 public:
  // All of it must outlive the controller and the loop's tasks.
  struct Environment {
    WindowServer& windowServer;
    NotificationCenter& notificationCenter;
    MainActor& mainActor;
  };
  // Makes the content of each new window.
  using RootViewFactory = std::function<std::unique_ptr<NSHostingView>()>;

  // Makes the primary window, begins to follow the screens, and places the windows for the first
  // time.
  [[nodiscard]] static std::shared_ptr<WallpaperWindowController> create(
      RootViewFactory rootViewFactory, Environment environment);
  // The same with clear, layer-backed hosting views, each of a root view of its own.
  [[nodiscard]] static std::shared_ptr<WallpaperWindowController> createHosting(
      std::function<std::shared_ptr<RootView>()> makeRootView, Environment environment);

  void setJoinsAllSpaces(bool joinsAllSpaces);
  void setDisplaySelection(DashboardDisplayMode mode, const std::string& selectedDisplayID);

  // Brings the windows in line with the target screens. With no target at all nothing changes, and
  // windows stay where they are.
  void syncToScreens();

  // The primary window: after a placement that of the first target screen.
  [[nodiscard]] const std::shared_ptr<NSWindow>& window() const { return window_; }

  // The attached screens, for the user to choose from.
  [[nodiscard]] static std::vector<DisplayOption> availableDisplays(const WindowServer& server);

 private:
  WallpaperWindowController(RootViewFactory rootViewFactory, Environment environment);

  [[nodiscard]] std::shared_ptr<NSWindow> makePrimaryWindow() const;
  [[nodiscard]] std::shared_ptr<NSWindow> makeWindow(Rect contentRect) const;
  void followScreens();
  static Task<void> syncLater(std::weak_ptr<WallpaperWindowController> weak);

  [[nodiscard]] std::vector<NSScreen> targetScreens() const;
  [[nodiscard]] std::vector<NSScreen> mainScreenAlone() const;
  void closeWindowsElsewhere(const std::vector<NSScreen>& screens);
  [[nodiscard]] std::shared_ptr<NSWindow> windowFor(const NSScreen& screen) const;
  void configure(NSWindow& window, const NSScreen& screen) const;
  [[nodiscard]] std::int64_t boardLevel() const;

  const Environment environment_;
  bool joinsAllSpaces_ = true;
  DashboardDisplayMode displayMode_ = DashboardDisplayMode::main;
  std::string selectedDisplayID_;
  std::map<std::string, std::shared_ptr<NSWindow>> managedWindows_;  // by screen id
  Subscription screenObserver_;
  const RootViewFactory rootViewFactory_;
  std::shared_ptr<NSWindow> window_;
};

}  // namespace orvane
