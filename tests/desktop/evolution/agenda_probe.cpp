// What the program would show, without a desktop to show it on: its store of calendars and its
// manager of them, with everything that they hear of.
//
//   agenda_probe READER MODULE [--folders DIRECTORY] [--now SECONDS] [--timezone NAME]
//
// Each time that something else is published it writes one line: the agenda as JSON, with the
// seconds on the monotonic clock. With --now the wall clock stands still. It runs until it is told
// to end and then exits with 0.
#include <time.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>

#include "agenda/task_manager.h"
#include "dump_json.h"
#include "linux/calendars/account_provider.h"
#include "linux/calendars/event_store.h"
#include "linux/calendars/folder_provider.h"
#include "linux/defaults/user_defaults.h"
#include "linux/evolution/evolution_accounts.h"
#include "linux/gio/session_bus.h"
#include "linux/locale/calendar.h"
#include "linux/locale/locale.h"
#include "linux/mainloop/main_loop.h"
#include "pinned_actor.h"
#include "platform/absent_app_service.h"
#include "platform/notification_center.h"

namespace {

using namespace orvane;

using Options = std::map<std::string, std::string>;

double monotonicSeconds() {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

host::Region regionOf(const Options& options) {
  host::Region region;
  region.locale = "en_US";
  if (const auto zone = options.find("--timezone"); zone != options.end()) {
    region.timeZone = zone->second;
  }
  if (const auto now = options.find("--now"); now != options.end()) {
    region.now = [date = Date{std::stod(now->second)}] { return date; };
  }
  return region;
}

// Writes what is published once the change is in place, and nothing twice.
class Publication {
 public:
  Publication(TaskManager& manager, MainActor& actor)
      : manager_(manager), actor_(actor), change_(manager.objectWillChange().subscribe([this] {
          next_ = actor_.after(Duration::zero(), [this] { write(); });
        })) {}

 private:
  void write() {
    auto agenda = dumpOf({}, manager_, {});
    for (const char* drawn : {"now", "frames", "display"}) agenda.erase(drawn);
    agenda["isRefreshing"] = manager_.isRefreshing.get();
    auto text = agenda.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
    if (text == last_) return;
    last_ = std::move(text);
    std::printf("{\"at\": %.6f, \"agenda\": %s}\n", monotonicSeconds(), last_.c_str());
    std::fflush(stdout);
  }

  TaskManager& manager_;
  MainActor& actor_;
  std::string last_;
  Subscription next_;
  Subscription change_;
};

std::optional<std::string> environmentVariable(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  return value && *value ? std::optional<std::string>(value) : std::nullopt;
}

// The programs that belong to the one under test.
struct Companions {
  std::string reader;
  std::string module;
};

int runProbe(const Companions& companions, const Options& options) {
  const auto region = regionOf(options);
  const auto calendar = host::makeCalendar(region);
  const auto locale = host::makeLocale(region);
  // Workers may use it until the loop has waited for them.
  std::optional<tools::PinnedActor> pinned;
  const auto loop = host::makeMainLoop();
  if (region.now) pinned.emplace(*loop, region.now());
  MainActor& actor = pinned ? static_cast<MainActor&>(*pinned) : *loop;
  const auto bus = host::gio::connectToBus(host::gio::sessionBusAddress(environmentVariable),
                                           std::chrono::milliseconds(500));
  NotificationCenter notifications;
  AbsentAppService appService;
  const auto defaults = host::makeUserDefaults({}, *loop);
  const auto settings = std::make_shared<DashboardSettings>(*defaults, appService);

  host::FolderOptions folders;
  if (const auto path = options.find("--folders"); path != options.end()) {
    folders.roots.push_back(path->second);
  }
  folders.readerPath = companions.reader;
  folders.localTimeZone = [&calendar] { return calendar->timeZoneName(); };
  host::AccountOptions accounts;
  accounts.readerPath = folders.readerPath;
  accounts.localTimeZone = folders.localTimeZone;
  host::EventStoreOptions parts;
  parts.providers.push_back(host::makeFolderProvider(std::move(folders), actor));
  parts.providers.push_back(host::makeAccountProvider(
      std::move(accounts), host::makeEvolutionAccounts({bus.get(), companions.module}, actor),
      actor));
  parts.instantOf = [&calendar](const DateComponents& due) { return calendar->date(due); };
  const std::shared_ptr<EKEventStore> store =
      host::makeEventStore(std::move(parts), actor, notifications);

  const auto manager =
      TaskManager::create(settings, store, {actor, notifications, *calendar, *locale});
  const Publication publication(*manager, actor);
  const auto onTerminate = loop->onSignal(SIGTERM, [&loop] { loop->quit(0); });
  manager->start();
  const int status = loop->run();
  actor.tasks().destroyAll();
  return status;
}

}  // namespace

int main(int count, char** arguments) {
  std::signal(SIGPIPE, SIG_IGN);
  if (count < 3) return 2;
  Options options;
  for (int index = 3; index + 1 < count; index += 2) {
    options[arguments[index]] = arguments[index + 1];
  }
  return runProbe({arguments[1], arguments[2]}, options);
}
