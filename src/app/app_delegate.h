// app/ is the program as a whole: what it is made of and in which order it starts. Everything here
// but main.cpp and the files whose names begin with main_ is standard C++ and knows no adapter.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "agenda/task_manager.h"
#include "focus/focus_hot_key_controller.h"
#include "foundation/main_actor.h"
#include "foundation/subscription.h"
#include "platform/calendar.h"
#include "platform/ek_event_store.h"
#include "platform/event_hot_keys.h"
#include "platform/form_window.h"
#include "platform/locale.h"
#include "platform/notification_center.h"
#include "platform/ns_apple_script.h"
#include "platform/ns_application.h"
#include "platform/ns_menu.h"
#include "platform/ns_status_bar.h"
#include "platform/ns_window.h"
#include "platform/sm_app_service.h"
#include "platform/user_defaults.h"
#include "settings/dashboard_settings.h"
#include "settings/settings_view.h"
#include "wallpaper/wallpaper_window_controller.h"

namespace orvane {

// Owns everything that lives as long as the program, and wires it together at launch. Main thread
// only. Destroying it releases what it owns and does nothing more.
class AppDelegate : public NSActionTarget, public std::enable_shared_from_this<AppDelegate> {
 public:
  // The world. All of it must outlive the delegate and the loop's tasks.
  struct Environment {
    NSApplication* application;  // missing only where the program was put together wrongly
    NSStatusBar& statusBar;
    FormWindowServer& formWindowServer;
    EventHotKeys& hotKeys;
    AppleScripts& scripts;
    UserDefaults& userDefaults;
    SMAppService& appService;
    WindowServer& windowServer;
    NotificationCenter& notificationCenter;
    MainActor& mainActor;
    const Calendar& calendar;
    const Locale& locale;
    // Makes the one calendar store, when the task manager is first needed.
    std::function<std::shared_ptr<EKEventStore>()> makeEventStore;
  };

  // Loads the settings; nothing else happens before the launch.
  [[nodiscard]] static std::shared_ptr<AppDelegate> create(Environment environment);

  // The launch sequence. To be called once, when the loop is about to run.
  void applicationDidFinishLaunching();
  // Takes the status item away. Icons that focus mode hid stay hidden.
  void applicationWillTerminate();

  // Brings the one settings window to the front; the first call makes it. Where the host can show
  // no such window, nothing comes of it.
  void openSettings();
  // A content of its own for a settings window.
  [[nodiscard]] std::shared_ptr<SettingsView> makeSettingsView();
  // Asks for a refresh of the agenda, and brings the board back to its place.
  void refreshNow();
  void quit();
  // Carries out "openSettings", "refreshNow" or "quit".
  void perform(const std::string& action) override;

  [[nodiscard]] const std::shared_ptr<DashboardSettings>& settings() const { return settings_; }
  // Made, with its calendar store, by the first call; the same object ever after.
  [[nodiscard]] const std::shared_ptr<TaskManager>& taskManager();
  // Null before the launch.
  [[nodiscard]] const std::shared_ptr<WallpaperWindowController>& wallpaperWindowController()
      const {
    return wallpaperWindowController_;
  }
  // Null before the launch.
  [[nodiscard]] const std::shared_ptr<FocusHotKeyController>& focusHotKeyController() const {
    return focusHotKeyController_;
  }

 private:
  explicit AppDelegate(Environment environment);

  void makeWallpaperWindows();
  void makeFocusHotKey();
  void placeWallpaperWindows();
  void replacePrimaryWindow();
  void followPlacementSettings();
  void configureStatusItem();
  [[nodiscard]] NSMenu statusMenu();
  [[nodiscard]] std::unique_ptr<NSWindowController> makeSettingsWindow();
  [[nodiscard]] NSApplication& sharedApplication() const;

  const Environment environment_;
  const std::shared_ptr<DashboardSettings> settings_;
  std::shared_ptr<TaskManager> taskManager_;
  std::shared_ptr<WallpaperWindowController> wallpaperWindowController_;
  std::shared_ptr<FocusHotKeyController> focusHotKeyController_;
  std::unique_ptr<NSWindowController> settingsWindowController_;
  std::unique_ptr<NSStatusItem> statusItem_;
  std::vector<Subscription> cancellables_;
};

}  // namespace orvane
