#pragma once

#include <gio/gio.h>

#include <memory>
#include <string>

#include "app/main_base.h"
#include "linux/calendars/event_store.h"
#include "linux/desktopicons/desktop_icons.h"
#include "linux/settingswindow/settings_notice.h"
#include "platform/event_hot_keys.h"
#include "platform/form_window.h"
#include "platform/notification_center.h"
#include "platform/ns_application.h"
#include "platform/ns_status_bar.h"
#include "platform/sm_app_service.h"
#include "platform/user_defaults.h"

namespace orvane {

// What the program uses of the desktop besides its windows.
struct Services {
  // `bus` may be null. `focusToken` is what lets the settings window take the focus; it is taken
  // when that window is shown. All of it outlives the services.
  Services(const Base& base, const Drawing& drawing, GDBusConnection* bus, std::string& focusToken);

  const std::unique_ptr<UserDefaults> userDefaults;
  const std::unique_ptr<SMAppService> appService;
  const std::unique_ptr<NSApplication> application;
  const std::unique_ptr<NSStatusBar> statusBar;
  const std::unique_ptr<host::SettingsNotice> settingsNotice;
  const std::unique_ptr<FormWindowServer> settingsWindows;
  const std::unique_ptr<EventHotKeys> hotKeys;
  const std::unique_ptr<host::DesktopIcons> desktopIcons;
};

// The folders, which are always there, and the desktop's accounts, where it has such.
[[nodiscard]] std::shared_ptr<host::EventStore> makeEventStore(const Base& base,
                                                               GDBusConnection* bus,
                                                               NotificationCenter& notifications);

}  // namespace orvane
