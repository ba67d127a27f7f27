#include "snapshot.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <utility>

#include "agenda/task_manager.h"
#include "assign_setting.h"
#include "backdrop.h"
#include "dashboard/wallpaper_dashboard_view.h"
#include "denying_store.h"
#include "dump_json.h"
#include "foundation/task.h"
#include "linux/calendars/event_store.h"
#include "linux/calendars/folder_provider.h"
#include "linux/defaults/user_defaults.h"
#include "linux/locale/calendar.h"
#include "linux/locale/locale.h"
#include "linux/locale/locale_name.h"
#include "linux/mainloop/main_loop.h"
#include "linux/paint/fonts.h"
#include "linux/paint/painter.h"
#include "linux/paint/text_measurer.h"
#include "pinned_actor.h"
#include "platform/absent_app_service.h"
#include "platform/notification_center.h"
#include "view/scene.h"

namespace orvane::tools {
namespace {

// A picture waits for everything that can be read, unlike a window.
constexpr std::chrono::minutes patience{10};

Outcome wrong(std::string message) { return {wrongArgument, std::move(message)}; }

host::Region regionOf(const SnapshotOptions& options) {
  host::Region region;
  region.timeZone = options.timeZone;
  region.locale = options.locale;
  return region;
}

std::optional<Outcome> problemOfRegion(const SnapshotOptions& options) {
  if (options.timeZone && !host::isTimeZone(*options.timeZone)) {
    return wrong("--timezone: there is no time zone \"" + *options.timeZone + "\"");
  }
  if (options.locale && !host::knownLocaleName(*options.locale)) {
    return wrong("--locale: there is no locale \"" + *options.locale + "\"");
  }
  return std::nullopt;
}

std::optional<Outcome> problemOfFolders(const SnapshotOptions& options) {
  for (const auto& folder : options.calendars) {
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error)) {
      return wrong("--calendars: there is no folder \"" + folder + "\"");
    }
  }
  return std::nullopt;
}

std::vector<std::string> absolutePaths(const std::vector<std::string>& folders) {
  std::vector<std::string> paths;
  paths.reserve(folders.size());
  for (const auto& folder : folders) paths.push_back(std::filesystem::absolute(folder).string());
  return paths;
}

std::string languageOf(const SnapshotOptions& options) {
  const auto name = options.locale ? host::knownLocaleName(*options.locale) : std::nullopt;
  auto language = name.value_or("");
  std::replace(language.begin(), language.end(), '_', '-');
  return language;
}

// Found before anything is read, so that nobody waits for a picture that goes nowhere.
std::optional<Outcome> problemOfResults(const SnapshotOptions& options) {
  const auto isWritable = [](const std::optional<std::string>& path) {
    if (!path || access(path->c_str(), W_OK) == 0) {
      return !path || !std::filesystem::is_directory(*path);
    }
    const bool isNew = errno == ENOENT;
    const auto folder = std::filesystem::absolute(*path).parent_path();
    return isNew && access(folder.c_str(), W_OK | X_OK) == 0;
  };
  if (!isWritable(options.dumpPath)) {
    return wrong("--dump: cannot write \"" + *options.dumpPath + "\"");
  }
  if (!isWritable(options.picturePath)) {
    return wrong("--out: cannot write \"" + *options.picturePath + "\"");
  }
  return std::nullopt;
}

bool writeText(const std::string& text, const std::string& path) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << text;
  file.close();
  return file.good();
}

// Everything that one snapshot is made of, in the order in which it may be taken down: what workers
// use stands before the loop, what uses the loop behind it.
class Snapshot {
 public:
  Snapshot(const SnapshotOptions& options, const host::Region& region, Date now,
           const std::string& readerPath)
      : options_(options),
        now_(now),
        calendar_(host::makeCalendar(region)),
        locale_(host::makeLocale(region)),
        loop_(host::makeMainLoop()),
        actor_(*loop_, now),
        defaults_(host::makeUserDefaults({}, *loop_)),
        settings_(std::make_shared<DashboardSettings>(*defaults_, appService_)),
        store_(makeStore(readerPath)),
        manager_(TaskManager::create(settings_, store_,
                                     {actor_, notifications_, *calendar_, *locale_})) {}
  Snapshot(const Snapshot&) = delete;

  Outcome take() {
    for (const auto& setting : options_.settings) {
      if (const auto problem = assign(*settings_, setting)) return wrong("--set: " + *problem);
    }
    auto backdrop = makeBackdrop(options_.background, pixels(options_.size.width),
                                 pixels(options_.size.height));
    if (const auto* problem = std::get_if<std::string>(&backdrop)) {
      return wrong("--background: " + *problem);
    }
    refresh();
    return draw(std::get<host::Picture>(backdrop));
  }

 private:
  // At least one; and no more where nobody wants a picture.
  [[nodiscard]] int pixels(double points) const {
    if (!options_.picturePath) return 1;
    return std::max(1, static_cast<int>(std::lround(points * options_.scale)));
  }

  std::shared_ptr<EKEventStore> makeStore(const std::string& readerPath) {
    host::FolderOptions folders;
    folders.roots = absolutePaths(options_.calendars);
    folders.readerPath = readerPath;
    folders.localTimeZone = [this] { return calendar_->timeZoneName(); };
    folders.patience = patience;
    host::EventStoreOptions options;
    options.providers.push_back(host::makeFolderProvider(std::move(folders), actor_));
    options.instantOf = [this](const DateComponents& due) { return calendar_->date(due); };
    return std::make_shared<DenyingStore>(
        host::makeEventStore(std::move(options), actor_, notifications_), actor_,
        options_.deniesEvents, options_.deniesReminders);
  }

  static Task<void> refreshAndQuit(std::shared_ptr<TaskManager> manager, host::MainLoop& loop) {
    co_await manager->requestAccessAndRefresh();
    loop.quit(0);
  }

  void refresh() {
    spawn(actor_, refreshAndQuit(manager_, *loop_));
    loop_->run();
  }

  Outcome draw(host::Picture& backdrop) {
    host::FontOptions fonts;
    fonts.language = languageOf(options_);
    const auto typesetter = host::makeTypesetter(fonts);
    const auto measurer = host::makeTextMeasurer(typesetter);
    const auto board = std::make_shared<WallpaperDashboardView>(
        manager_, settings_,
        DashboardEnvironment{*locale_, *calendar_, [now = now_] { return now; }});
    Scene scene(board, *measurer);
    scene.update(now_, options_.size);

    if (options_.dumpPath &&
        !writeText(dumpText(now_, *manager_, scene.layout()), *options_.dumpPath)) {
      return wrong("--dump: cannot write \"" + *options_.dumpPath + "\"");
    }
    if (!options_.picturePath) return {};
    host::Picture picture(backdrop.width, backdrop.height);
    const auto behind = backdrop.buffer();
    host::makePainter(typesetter)
        ->paint(scene.list(), {picture.buffer(), options_.scale, {}, &behind},
                {{0, 0, picture.width, picture.height}});
    const auto error = host::writePNG(picture, *options_.picturePath);
    return error ? wrong("--out: " + error->message) : Outcome{};
  }

  const SnapshotOptions& options_;
  Date now_;
  std::unique_ptr<host::SystemCalendar> calendar_;
  std::unique_ptr<host::SystemLocale> locale_;
  std::unique_ptr<host::MainLoop> loop_;
  PinnedActor actor_;
  NotificationCenter notifications_;
  AbsentAppService appService_;
  std::unique_ptr<host::FileUserDefaults> defaults_;
  std::shared_ptr<DashboardSettings> settings_;
  std::shared_ptr<EKEventStore> store_;
  std::shared_ptr<TaskManager> manager_;
};

}  // namespace

Outcome takeSnapshot(const SnapshotOptions& options, const std::string& readerPath) {
  if (auto problem = problemOfRegion(options)) return *problem;
  if (auto problem = problemOfFolders(options)) return *problem;
  if (auto problem = problemOfResults(options)) return *problem;
  auto region = regionOf(options);
  const auto now = host::makeCalendar(region)->date(options.now);
  if (!now) return wrong("--now: there is no such date");
  region.now = [now = *now] { return now; };
  return Snapshot(options, region, *now, readerPath).take();
}

}  // namespace orvane::tools
