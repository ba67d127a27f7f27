// The composition of the program: with main_desktop.cpp the only file that names adapters.

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/command_line.h"
#include "app/main_desktop.h"
#include "app/orvane_app.h"
#include "app/returning_desktop.h"
#include "linux/application/host_application.h"
#include "linux/application/instance.h"
#include "linux/calendars/account_provider.h"
#include "linux/calendars/calendar_roots.h"
#include "linux/calendars/event_store.h"
#include "linux/calendars/folder_provider.h"
#include "linux/defaults/user_defaults.h"
#include "linux/desktopicons/desktop_icons.h"
#include "linux/evolution/evolution_accounts.h"
#include "linux/gio/session_bus.h"
#include "linux/hotkey/event_hot_keys.h"
#include "linux/locale/calendar.h"
#include "linux/locale/locale.h"
#include "linux/login/autostart_service.h"
#include "linux/mainloop/clock_watcher.h"
#include "linux/mainloop/main_loop.h"
#include "linux/mainloop/memory_use.h"
#include "linux/mainloop/periodic_schedule.h"
#include "linux/paint/fonts.h"
#include "linux/paint/painter.h"
#include "linux/paint/text_measurer.h"
#include "linux/session/session_signs.h"
#include "linux/settingswindow/form_windows.h"
#include "linux/settingswindow/settings_notice.h"
#include "linux/statusitem/status_bar.h"

namespace {

using namespace orvane;

constexpr int kSuccess = 0;
constexpr int kNoDesktop = 1;

// How long the desktop may take to answer at the start, when it may itself be starting.
constexpr std::chrono::seconds kFirstPatience{10};
// When the first refresh is done and the board has been drawn a few times.
constexpr std::chrono::seconds kSettling{5};
// A session bus answers within a few milliseconds or has a problem of its own.
constexpr std::chrono::milliseconds kBusPatience{500};

std::optional<std::string> environmentVariable(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  return value && *value ? std::optional<std::string>(value) : std::nullopt;
}

std::filesystem::path programPath() {
  std::error_code unknown;
  return std::filesystem::read_symlink("/proc/self/exe", unknown);
}

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

// What others may ask of the running program over the bus, which lasts longer than the program.
// `focusToken` keeps what lets the window that they ask for take the focus.
host::ApplicationOptions applicationOptions(GDBusConnection* bus,
                                            const std::weak_ptr<AppDelegate>& running,
                                            std::string& focusToken) {
  const auto with = [&running](void (*perform)(AppDelegate&)) {
    return [&running, perform] {
      if (const auto delegate = running.lock()) perform(*delegate);
    };
  };
  const auto openSettings = with([](AppDelegate& delegate) { delegate.openSettings(); });
  host::ApplicationOptions options;
  options.connection = bus;
  options.runtimeFolder = environmentVariable("XDG_RUNTIME_DIR").value_or("");
  options.startedByBus = environmentVariable("DBUS_STARTER_ADDRESS").has_value();
  options.activationToken = environmentVariable("XDG_ACTIVATION_TOKEN")
                                .value_or(environmentVariable("DESKTOP_STARTUP_ID").value_or(""));
  options.takeActivationToken = [&focusToken](const std::string& token) { focusToken = token; };
  options.activate = openSettings;
  options.actions = {{"settings", openSettings},
                     {"refresh-now", with([](AppDelegate& delegate) { delegate.refreshNow(); })},
                     {"toggle-focus", with([](AppDelegate& delegate) {
                        delegate.focusHotKeyController()->toggleFocusMode();
                      })},
                     {"quit", with([](AppDelegate& delegate) { delegate.quit(); })}};
  return options;
}

void say(const std::string& sentence) { std::cerr << "orvane: " << sentence << '\n'; }

// What stands from the first line to the last. What workers and suspended work may still use stands
// before the loop, so that it ends after.
struct Base {
  // First of all, since the fonts' configuration is read in the background from here on.
  const std::shared_ptr<host::Typesetter> typesetter = host::makeTypesetter();
  const std::unique_ptr<host::SystemCalendar> calendar = host::makeCalendar();
  const std::unique_ptr<host::SystemLocale> locale = host::makeLocale();
  const std::unique_ptr<host::MainLoop> loop = host::makeMainLoop();

  [[nodiscard]] std::function<void()> quitting() const {
    return [&loop = *loop] { loop.quit(kSuccess); };
  }
};

// By what the board is drawn, and when.
struct Drawing {
  explicit Drawing(const Base& base)
      : measurer(host::makeTextMeasurer(base.typesetter)),
        painter(host::makePainter(base.typesetter)) {}

  const std::unique_ptr<PeriodicSchedule> schedule = host::makePeriodicSchedule();
  const std::unique_ptr<TextMeasurer> measurer;
  const std::unique_ptr<Painter> painter;
};

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

// What the program uses of the desktop besides its windows.
struct Services {
  Services(const Base& base, const Drawing& drawing, GDBusConnection* bus, std::string& focusToken)
      : userDefaults(
            host::makeUserDefaults(host::userDefaultsPath(environmentVariable), *base.loop)),
        application(host::makeApplication(base.quitting())),
        statusBar(host::makeStatusBar({bus, *base.loop, *drawing.painter})),
        settingsNotice(host::makeSettingsNotice(bus)),
        settingsWindows(makeSettingsWindows(base, drawing, *settingsNotice, focusToken)),
        hotKeys(host::makeEventHotKeys(hotKeyOptions(), *base.loop)),
        desktopIcons(
            host::makeDesktopIcons({environmentVariable("XDG_CURRENT_DESKTOP").value_or(""), bus,
                                    host::desktopIconsStatePath(environmentVariable)})) {}

  const std::unique_ptr<UserDefaults> userDefaults;
  const std::unique_ptr<SMAppService> appService = host::makeAutostartService(
      {host::autostartEntryPath(environmentVariable), programPath().string()});
  const std::unique_ptr<NSApplication> application;
  const std::unique_ptr<NSStatusBar> statusBar;
  const std::unique_ptr<host::SettingsNotice> settingsNotice;
  const std::unique_ptr<FormWindowServer> settingsWindows;
  const std::unique_ptr<EventHotKeys> hotKeys;
  const std::unique_ptr<host::DesktopIcons> desktopIcons;
};

ReturningDesktop::Environment desktopEnvironment(const Base& base, const Stage& stage,
                                                 const host::SessionSigns& session) {
  return {
      stage.mainActor, stage.notifications,
      [&stage](const auto& attempt) { return openDesktop(environmentVariable, stage, attempt); },
      [&session] { return session.hasEnded(); },
      [quit = base.quitting()](const std::string& sentence) {
        say(sentence);
        quit();
      }};
}

bool opens(ReturningDesktop& desktop) {
  const auto failures = desktop.open(kFirstPatience);
  std::for_each(failures.begin(), failures.end(), say);
  return failures.empty();
}

// The folders, which are always there, and the desktop's accounts, where it has such.
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

// Tells everyone who goes by the clocks, the zone or the day when those change.
std::unique_ptr<host::ClockWatcher> watchClocks(const Base& base,
                                                const std::weak_ptr<host::EventStore>& eventStore) {
  host::ClockWatcherOptions options;
  options.startOfNextDay = [&calendar = *base.calendar](Date date) {
    return calendar.startOfNextDay(date);
  };
  return host::makeClockWatcher(*base.loop, std::move(options),
                                [&base, &eventStore](host::ClockChange change) {
                                  if (change == host::ClockChange::zone) {
                                    base.calendar->systemChanged();
                                    base.locale->systemChanged();
                                  }
                                  if (const auto store = eventStore.lock()) store->systemChanged();
                                });
}

int runProgram() {
  std::signal(SIGPIPE, SIG_IGN);  // a helper or a display that went away is told by the write
  const Base base;
  std::weak_ptr<AppDelegate> running;
  std::string focusToken;
  const auto bus =
      host::gio::connectToBus(host::gio::sessionBusAddress(environmentVariable), kBusPatience);
  const auto instance =
      host::claimInstance(applicationOptions(bus.get(), running, focusToken), *base.loop);
  if (instance.outcome == host::InstanceOutcome::forwarded) return kSuccess;

  NotificationCenter notifications;
  const Drawing drawing(base);
  const Stage stage{*base.loop, *drawing.schedule, notifications, *drawing.measurer,
                    *drawing.painter};
  const auto session = host::makeSessionSigns(environmentVariable);
  ReturningDesktop desktop(desktopEnvironment(base, stage, *session));
  if (!opens(desktop)) return kNoDesktop;

  const Services services(base, drawing, bus.get(), focusToken);
  std::weak_ptr<host::EventStore> eventStore;
  const OrvaneApp app({services.application.get(), *services.statusBar, *services.settingsWindows,
                       *services.hotKeys, *services.desktopIcons, *services.userDefaults,
                       *services.appService, desktop, notifications, *base.loop, *base.calendar,
                       *base.locale, [&] {
                         const auto store = makeEventStore(base, bus.get(), notifications);
                         eventStore = store;
                         return store;
                       }});
  running = app.appDelegate();
  const auto clockWatcher = watchClocks(base, eventStore);
  const auto onTerminate = base.loop->onSignal(SIGTERM, base.quitting());
  const auto onInterrupt = base.loop->onSignal(SIGINT, base.quitting());

  return app.main([&] {
    if (!running.lock()->settings()->focusMode) services.desktopIcons->giveBackLeftovers();
    const auto settled = base.loop->after(kSettling, &host::letGoOfStartPages);
    base.loop->run();
  });
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
  if (const auto answer = orvane::answerTo(arguments, ORVANE_VERSION)) {
    (answer->status == 0 ? std::cout : std::cerr) << answer->text;
    return answer->status;
  }
  orvane::host::giveMemoryBackEarly();
  try {
    return runProgram();
  } catch (const std::exception& error) {
    std::cerr << "orvane: " << error.what() << '\n';
    return 1;
  }
}
