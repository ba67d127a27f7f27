// The program from its first line to its last.

#include <algorithm>
#include <chrono>
#include <csignal>
#include <exception>
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/command_line.h"
#include "app/main_base.h"
#include "app/main_desktop.h"
#include "app/main_services.h"
#include "app/main_start.h"
#include "app/orvane_app.h"
#include "app/returning_desktop.h"
#include "linux/application/instance.h"
#include "linux/gio/session_bus.h"
#include "linux/mainloop/clock_watcher.h"
#include "linux/mainloop/end_limit.h"
#include "linux/mainloop/memory_use.h"
#include "linux/session/login_session.h"
#include "linux/session/session_signs.h"

namespace {

using namespace orvane;

constexpr int kNoDesktop = 1;

// How long the desktop may take to answer at the start, when it may itself be starting.
constexpr std::chrono::seconds kFirstPatience{10};
// When the first refresh is done and the board has been drawn a few times.
constexpr std::chrono::seconds kSettling{5};
// When the accounts' library has been loaded, and has read what there is.
constexpr std::chrono::seconds kAccountsSettling{20};
// A session bus answers within a few milliseconds or has a problem of its own.
constexpr std::chrono::milliseconds kBusPatience{500};
// The end takes a fraction of a second, unless it waits for something that may never answer.
constexpr std::chrono::seconds kEndPatience{10};

// What others may ask of the running program over the bus, which lasts longer than the program.
// `focusToken` keeps what lets the window that they ask for take the focus.
host::ApplicationOptions applicationOptions(const StartMarks& start, GDBusConnection* bus,
                                            const std::string& busAddress,
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
  options.busAddress = busAddress;
  options.runtimeFolder = environmentVariable("XDG_RUNTIME_DIR").value_or("");
  options.startedByBus = start.isByBus;
  options.startedWithSession = start.isWithSession;
  options.activationToken = start.activationToken;
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

ReturningDesktop::Environment desktopEnvironment(const Base& base, const Stage& stage,
                                                 const host::SessionSigns& session) {
  const auto kinds = std::make_shared<DesktopKinds>(desktopKinds(environmentVariable, stage));
  // A signal that came just before the wait for a desktop does not interrupt it.
  const auto open = [kinds, &loop = *base.loop](ReturningDesktop::Attempt attempt) {
    attempt.isInVain = [&loop, isInVain = attempt.isInVain] {
      return loop.doesSignalWait() || isInVain();
    };
    return kinds->open(attempt);
  };
  return {stage.mainActor, stage.notifications, open, [&session] { return session.hasEnded(); },
          [quit = base.quitting()](const std::string& sentence) {
            say(sentence);
            quit();
          }};
}

// Why each display that is named cannot be used is a sentence; together they are one line.
bool opens(ReturningDesktop& desktop) {
  std::string reasons;
  for (const auto& sentence : desktop.open(kFirstPatience)) {
    reasons += (reasons.empty() ? "" : " ") + sentence;
  }
  if (!reasons.empty()) say(reasons);
  return reasons.empty();
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

int runProgram(const StartMarks& start) {
  std::signal(SIGPIPE, SIG_IGN);  // a helper or a display that went away is told by the write
  const host::StartPages startPages;
  host::EndLimit endLimit;
  const Base base;
  std::weak_ptr<AppDelegate> running;
  std::string focusToken;
  const auto busAddress = host::gio::sessionBusAddress(environmentVariable);
  const auto bus = host::gio::connectToBus(busAddress, kBusPatience);
  const auto instance = host::claimInstance(
      applicationOptions(start, bus.get(), busAddress, running, focusToken), *base.loop);
  if (instance.outcome == host::InstanceOutcome::forwarded) return kSuccess;

  NotificationCenter notifications;
  const Drawing drawing(base);
  const auto loginSession =
      host::makeLoginSession(host::loginSessionOptions(environmentVariable), *base.loop);
  const Stage stage{*base.loop,        *drawing.schedule, notifications,
                    *drawing.measurer, *drawing.painter,  *loginSession};
  const auto session = host::makeSessionSigns(environmentVariable);
  ReturningDesktop desktop(desktopEnvironment(base, stage, *session));
  if (!opens(desktop)) return kNoDesktop;

  const Services services(base, drawing, bus.get(), focusToken);
  std::weak_ptr<host::EventStore> eventStore;
  const OrvaneApp app({services.application.get(), *services.statusBar, *services.settingsWindows,
                       *services.hotKeys, *services.desktopIcons, *services.userDefaults,
                       *services.appService, desktop, notifications, *base.loop, *base.calendar,
                       *base.locale, [&] {
                         auto store = makeEventStore(base, bus.get(), notifications);
                         eventStore = store;
                         return store;
                       }});
  running = app.appDelegate();
  const auto onScreens =
      notifications.addObserver(NSApplicationDidChangeScreenParametersNotification,
                                [&services] { services.desktopIcons->screensChanged(); });
  const auto clockWatcher = watchClocks(base, eventStore);
  const auto onTerminate = base.loop->onSignal(SIGTERM, base.quitting());
  const auto onInterrupt = base.loop->onSignal(SIGINT, base.quitting());

  return app.main([&] {
    if (!running.lock()->settings()->focusMode) services.desktopIcons->giveBackLeftovers();
    const auto settled = base.loop->after(kSettling, [&] { startPages.letGo(); });
    const auto accountsSettled = base.loop->after(kAccountsSettling, [&] { startPages.letGo(); });
    base.loop->run();
    endLimit.begin(kEndPatience);
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
    return runProgram(orvane::takeStartMarks());
  } catch (const std::exception& error) {
    std::cerr << "orvane: " << error.what() << '\n';
    return 1;
  }
}
