// The composition of the program: the only file that names every adapter.

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
#include "app/orvane_app.h"
#include "app/returning_desktop.h"
#include "linux/application/host_application.h"
#include "linux/application/instance.h"
#include "linux/calendars/calendar_roots.h"
#include "linux/calendars/event_store.h"
#include "linux/calendars/folder_provider.h"
#include "linux/defaults/user_defaults.h"
#include "linux/desktopicons/desktop_icons.h"
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
#include "linux/settingswindow/settings_notice.h"
#include "linux/statusitem/status_bar.h"
#ifdef ORVANE_WAYLAND
#include "linux/wayland/wayland_desktop.h"
#endif
#ifdef ORVANE_X11
#include "linux/x11/x11_desktop.h"
#endif

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

#if defined(ORVANE_WAYLAND) && defined(ORVANE_X11)
constexpr const char* kNothingNamed =
    "there is no desktop to show the dashboard on: neither WAYLAND_DISPLAY nor DISPLAY is set";
#elif defined(ORVANE_WAYLAND)
constexpr const char* kNothingNamed =
    "there is no desktop to show the dashboard on: WAYLAND_DISPLAY is not set";
#else
constexpr const char* kNothingNamed =
    "there is no desktop to show the dashboard on: DISPLAY is not set";
#endif

std::optional<std::string> environmentVariable(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  return value && *value ? std::optional<std::string>(value) : std::nullopt;
}

std::filesystem::path programPath() {
  std::error_code unknown;
  return std::filesystem::read_symlink("/proc/self/exe", unknown);
}

// The reader lies beside the program in a build folder, and in the folder for programs that nobody
// starts by hand when both are installed.
std::string readerPath() {
  constexpr const char* kReader = "orvane-reader";
  const auto folder = programPath().parent_path();
  std::error_code unknown;
  if (std::filesystem::exists(folder / kReader, unknown)) return folder / kReader;
  return (folder / ORVANE_LIBEXEC_DIR / kReader).lexically_normal();
}

// Everything that a desktop's windows lean on.
struct Stage {
  MainActor& mainActor;
  PeriodicSchedule& schedule;
  NotificationCenter& notifications;
  const TextMeasurer& measurer;
  Painter& painter;
};

// The desktop that the environment names: the Wayland compositor where it has the layer shell, else
// the X server.
ReturningDesktop::Opened openDesktop(const Stage& stage, const ReturningDesktop::Attempt& attempt) {
  std::vector<std::string> failures;
#ifdef ORVANE_WAYLAND
  if (environmentVariable("WAYLAND_DISPLAY")) {
    auto desktop =
        host::makeWaylandDesktop({stage.mainActor, stage.schedule, stage.notifications,
                                  stage.measurer, stage.painter, attempt.onLost, attempt.patience});
    if (desktop.server) return {std::move(desktop.server), {}};
    failures.push_back(desktop.failure);
  }
#endif
#ifdef ORVANE_X11
  if (environmentVariable("DISPLAY")) {
    auto desktop =
        host::makeX11Desktop({stage.mainActor, stage.schedule, stage.notifications, stage.measurer,
                              stage.painter, attempt.onLost, attempt.patience});
    if (desktop.server) return {std::move(desktop.server), {}};
    failures.push_back(desktop.failure);
  }
#endif
  if (failures.empty()) failures.emplace_back(kNothingNamed);
  return {nullptr, std::move(failures)};
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
host::ApplicationOptions applicationOptions(GDBusConnection* bus,
                                            const std::weak_ptr<AppDelegate>& running) {
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

int runProgram() {
  std::signal(SIGPIPE, SIG_IGN);  // a helper or a display that went away is told by the write
  // First of all, since the fonts' configuration is read in the background from here on.
  const auto typesetter = host::makeTypesetter();
  // What workers and suspended work may still use stands before the loop, so that it ends after.
  const auto calendar = host::makeCalendar();
  const auto locale = host::makeLocale();
  const auto loop = host::makeMainLoop();
  std::weak_ptr<AppDelegate> running;
  const auto bus =
      host::gio::connectToBus(host::gio::sessionBusAddress(environmentVariable), kBusPatience);
  const auto instance = host::claimInstance(applicationOptions(bus.get(), running), *loop);
  if (instance.outcome == host::InstanceOutcome::forwarded) return kSuccess;

  NotificationCenter notifications;
  const auto schedule = host::makePeriodicSchedule();
  const auto measurer = host::makeTextMeasurer(typesetter);
  const auto painter = host::makePainter(typesetter);
  const auto session = host::makeSessionSigns(environmentVariable);

  const Stage stage{*loop, *schedule, notifications, *measurer, *painter};
  ReturningDesktop desktop(
      {*loop, notifications,
       [&stage](const ReturningDesktop::Attempt& attempt) { return openDesktop(stage, attempt); },
       [&session] { return session->hasEnded(); },
       [&loop](const std::string& sentence) {
         say(sentence);
         loop->quit(kSuccess);
       }});
  const auto failures = desktop.open(kFirstPatience);
  std::for_each(failures.begin(), failures.end(), say);
  if (!failures.empty()) return kNoDesktop;

  const auto userDefaults =
      host::makeUserDefaults(host::userDefaultsPath(environmentVariable), *loop);
  const auto appService = host::makeAutostartService(
      {host::autostartEntryPath(environmentVariable), programPath().string()});
  const auto application = host::makeApplication([&loop] { loop->quit(kSuccess); });
  const auto statusBar = host::makeStatusBar({bus.get(), *loop, *painter});
  const auto settingsWindows = host::makeSettingsNotice(bus.get());
  const auto hotKeys = host::makeEventHotKeys(hotKeyOptions(), *loop);
  const auto desktopIcons =
      host::makeDesktopIcons({environmentVariable("XDG_CURRENT_DESKTOP").value_or(""), bus.get(),
                              host::desktopIconsStatePath(environmentVariable)});
  std::weak_ptr<host::EventStore> eventStore;
  const auto makeEventStore = [&]() -> std::shared_ptr<EKEventStore> {
    host::EventStoreOptions options;
    host::FolderOptions folders;
    folders.roots = host::calendarRoots(environmentVariable);
    folders.readerPath = readerPath();
    folders.localTimeZone = [&calendar] { return calendar->timeZoneName(); };
    options.providers.push_back(host::makeFolderProvider(std::move(folders), *loop));
    options.instantOf = [&calendar](const DateComponents& due) { return calendar->date(due); };
    std::shared_ptr<host::EventStore> store =
        host::makeEventStore(std::move(options), *loop, notifications);
    eventStore = store;
    return store;
  };
  const OrvaneApp app({application.get(), *statusBar, *settingsWindows, *hotKeys, *desktopIcons,
                       *userDefaults, *appService, desktop, notifications, *loop, *calendar,
                       *locale, makeEventStore});
  running = app.appDelegate();

  host::ClockWatcherOptions clocks;
  clocks.startOfNextDay = [&calendar](Date date) { return calendar->startOfNextDay(date); };
  const auto clockWatcher =
      host::makeClockWatcher(*loop, std::move(clocks), [&](host::ClockChange change) {
        if (change == host::ClockChange::zone) {
          calendar->systemChanged();
          locale->systemChanged();
        }
        if (const auto store = eventStore.lock()) store->systemChanged();
      });
  const auto onTerminate = loop->onSignal(SIGTERM, [&loop] { loop->quit(kSuccess); });
  const auto onInterrupt = loop->onSignal(SIGINT, [&loop] { loop->quit(kSuccess); });

  return app.main([&] {
    if (!running.lock()->settings()->focusMode) desktopIcons->giveBackLeftovers();
    const auto settled = loop->after(kSettling, &host::letGoOfStartPages);
    loop->run();
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
