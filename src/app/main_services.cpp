#include "app/main_services.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "linux/application/host_application.h"
#include "linux/calendars/account_provider.h"
#include "linux/calendars/calendar_roots.h"
#include "linux/calendars/folder_provider.h"
#include "linux/defaults/user_defaults.h"
#include "linux/evolution/evolution_accounts.h"
#include "linux/gio/session_bus.h"
#include "linux/hotkey/event_hot_keys.h"
#include "linux/login/autostart_service.h"
#include "linux/settingswindow/form_windows.h"
#include "linux/statusitem/status_bar.h"

namespace orvane {
namespace {

// Helpers lie beside the program in a build folder, and in the folder for programs that nobody
// starts by hand when they are installed.
std::string helperPath(const char* helper) {
  const auto folder = programPath().parent_path();
  std::error_code unknown;
  if (std::filesystem::exists(folder / helper, unknown)) return folder / helper;
  return (folder / ORVANE_LIBEXEC_DIR / helper).lexically_normal();
}

// Under Wayland only the portal hears keys that go to native windows.
host::HotKeyOptions hotKeyOptions() {
  host::HotKeyOptions options;
  if (environmentVariable("WAYLAND_DISPLAY")) {
    options.portalBus = host::gio::sessionBusAddress(environmentVariable);
  } else {
    options.x11Display = environmentVariable("DISPLAY").value_or("");
  }
  return options;
}

std::unique_ptr<FormWindowServer> makeSettingsWindows(const Base& base, const Drawing& drawing,
                                                      host::SettingsNotice& notice,
                                                      std::string& focusToken) {
  host::FormWindowsOptions options;
  options.programPath = helperPath("orvane-settings");
  options.tell = [&notice](const std::string& title, const std::string& sentence) {
    notice.say(title, sentence);
  };
  options.drawPreview = host::previewDrawing(*drawing.measurer, *drawing.painter);
  options.takeActivationToken = [&focusToken] { return std::exchange(focusToken, {}); };
  return host::makeFormWindows(std::move(options), *base.loop);
}

}  // namespace

Services::Services(const Base& base, const Drawing& drawing, GDBusConnection* bus,
                   std::string& focusToken)
    : userDefaults(host::makeUserDefaults(host::userDefaultsPath(environmentVariable), *base.loop)),
      appService(host::makeAutostartService(
          {host::autostartEntryPath(environmentVariable), programPath().string()})),
      application(host::makeApplication(base.quitting())),
      statusBar(
          host::makeStatusBar({bus, *base.loop, *drawing.painter,
                               [&focusToken](const std::string& token) { focusToken = token; }})),
      settingsNotice(host::makeSettingsNotice(bus)),
      settingsWindows(makeSettingsWindows(base, drawing, *settingsNotice, focusToken)),
      hotKeys(host::makeEventHotKeys(hotKeyOptions(), *base.loop)),
      desktopIcons(host::makeDesktopIcons({environmentVariable("XDG_CURRENT_DESKTOP").value_or(""),
                                           bus, host::desktopIconsStatePath(environmentVariable),
                                           base.loop.get()})) {}

std::shared_ptr<host::EventStore> makeEventStore(const Base& base, GDBusConnection* bus,
                                                 NotificationCenter& notifications) {
  host::FolderOptions folders;
  folders.roots = host::calendarRoots(environmentVariable);
  folders.readerPath = helperPath("orvane-reader");
  folders.localTimeZone = [&calendar = *base.calendar] { return calendar.timeZoneName(); };
  host::AccountOptions accounts;
  accounts.readerPath = folders.readerPath;
  accounts.localTimeZone = folders.localTimeZone;
  host::EventStoreOptions options;
  options.providers.push_back(host::makeFolderProvider(std::move(folders), *base.loop));
  options.providers.push_back(host::makeAccountProvider(
      std::move(accounts),
      host::makeEvolutionAccounts({bus, helperPath("orvane-evolution.so")}, *base.loop),
      *base.loop));
  options.instantOf = [&calendar = *base.calendar](const auto& due) { return calendar.date(due); };
  return host::makeEventStore(std::move(options), *base.loop, notifications);
}

}  // namespace orvane
