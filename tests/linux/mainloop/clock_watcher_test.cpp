#include "linux/mainloop/clock_watcher.h"

#include <gmock/gmock.h>
#include <stdlib.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <optional>
#include <vector>

#include "fake_wall_timer.h"
#include "linux/mainloop/main_loop.h"
#include "linux/mainloop/zone_files.h"

namespace orvane::host {
namespace {

namespace fs = std::filesystem;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

class Folder {
 public:
  Folder() {
    std::string pattern = (fs::temp_directory_path() / "orvane-zone-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
    path = pattern;
  }
  ~Folder() { fs::remove_all(path); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  fs::path write(const std::string& name, const std::string& text) const {
    fs::create_directories((path / name).parent_path());
    std::ofstream(path / name) << text;
    return path / name;
  }
  fs::path path;
};

class ClockWatcherTest : public testing::Test {
 protected:
  // Days of 24 hours that begin `offset` seconds after UTC's.
  Date startOfNextDay(Date date) const {
    return {(std::floor((date.secondsSince1970 - offset) / 86400) + 1) * 86400 + offset};
  }
  void watch() {
    ClockWatcherOptions options;
    options.startOfNextDay = [this](Date date) { return startOfNextDay(date); };
    options.localtime = folder.path / "localtime";
    options.timer = clock.makeTimer();
    options.suspendedTime = [this] { return suspended; };
    watcher = makeClockWatcher(*loop, std::move(options),
                               [this](ClockChange change) { changes.push_back(change); });
  }
  Folder folder;
  std::unique_ptr<MainLoop> loop = makeMainLoop();
  FakeWallClock clock{hours(22)};
  double offset = 0;
  Duration suspended{};
  std::vector<ClockChange> changes;
  std::unique_ptr<ClockWatcher> watcher;
};

TEST_F(ClockWatcherTest, TellsWhenTheLocalDayTurnsAndNotBefore) {
  watch();
  EXPECT_EQ(clock.armedFor(), hours(24));
  clock.advance(hours(2) - seconds(1));
  EXPECT_THAT(changes, IsEmpty());
  clock.advance(seconds(1));
  EXPECT_THAT(changes, ElementsAre(ClockChange::dayTurned));
  clock.advance(hours(48));
  EXPECT_EQ(changes.size(), 3);
}

TEST_F(ClockWatcherTest, TellsOfASetClockAndLooksForTheNewDay) {
  watch();
  clock.set(hours(24 * 10 + 3));
  EXPECT_THAT(changes, ElementsAre(ClockChange::clockSet));
  EXPECT_EQ(clock.armedFor(), hours(24 * 11));
}

TEST_F(ClockWatcherTest, TellsAResumeFromASetClock) {
  watch();
  suspended += hours(5);
  clock.set(clock.now() + hours(5));
  clock.set(clock.now() + hours(5));
  EXPECT_THAT(changes, ElementsAre(ClockChange::resumed, ClockChange::clockSet));
}

TEST_F(ClockWatcherTest, SurvivesACalendarThatAnswersNonsense) {
  offset = 1e12;
  watch();
  EXPECT_LE(*clock.armedFor(), clock.now() + hours(51));
  EXPECT_GT(*clock.armedFor(), clock.now());
}

TEST_F(ClockWatcherTest, EndsWithItsDestruction) {
  watch();
  watcher.reset();
  EXPECT_EQ(clock.armedFor(), std::nullopt);
}

TEST_F(ClockWatcherTest, TellsOfAnotherZoneAndTakesItsDay) {
  fs::create_symlink(folder.write("zones/Berlin", "TZif Berlin"), folder.path / "localtime");
  watch();
  offset = -3600;
  fs::create_symlink(folder.write("zones/Tokyo", "TZif Tokyo"), folder.path / "new");
  fs::rename(folder.path / "new", folder.path / "localtime");
  const auto limit = loop->after(minutes(1), [this] { loop->quit(1); });
  Subscription poll;
  std::function<void()> check = [&] {
    if (!changes.empty()) return loop->quit(0);
    poll = loop->after(std::chrono::milliseconds(5), check);
  };
  check();
  ASSERT_EQ(loop->run(), 0);
  EXPECT_THAT(changes, ElementsAre(ClockChange::zone));
  EXPECT_EQ(clock.armedFor(), hours(23));
}

TEST(LinkChain, NamesEveryLinkOnTheWayToTheContent) {
  const Folder folder;
  const auto content = folder.write("zones/Europe/Berlin", "x");
  fs::create_symlink("../zones/Europe/Berlin",
                     (fs::create_directory(folder.path / "etc"), folder.path / "etc/middle"));
  fs::create_symlink(folder.path / "etc/middle", folder.path / "localtime");
  EXPECT_THAT(linkChain(folder.path / "localtime"),
              ElementsAre(folder.path / "localtime", folder.path / "etc/middle", content));
}

TEST(LinkChain, EndsWhereTheLinksRunInACircleOrLeadNowhere) {
  const Folder folder;
  fs::create_symlink("b", folder.path / "a");
  fs::create_symlink("a", folder.path / "b");
  EXPECT_THAT(linkChain(folder.path / "a"), ElementsAre(folder.path / "a", folder.path / "b"));
  EXPECT_THAT(linkChain(folder.path / "none"), ElementsAre(folder.path / "none"));
}

class ZoneFilesTest : public testing::Test {
 protected:
  // Runs the loop until `changed` was called `count` times, or fails after a minute.
  void expectChanges(int count) {
    const auto limit = loop->after(minutes(1), [this] { loop->quit(1); });
    wanted = count;
    ASSERT_EQ(loop->run(), 0) << "saw " << calls << " of " << count;
  }
  void watch(const fs::path& file) {
    files = makeZoneFiles(*loop, file, [this] {
      if (++calls == wanted) loop->quit(0);
    });
  }
  Folder folder;
  std::unique_ptr<MainLoop> loop = makeMainLoop();
  std::unique_ptr<ZoneFiles> files;
  int calls = 0;
  int wanted = 0;
};

TEST_F(ZoneFilesTest, SeesTheFileWrittenInPlace) {
  const auto file = folder.write("localtime", "old");
  watch(file);
  folder.write("localtime", "new");
  expectChanges(1);
}

TEST_F(ZoneFilesTest, SeesTheFileAppear) {
  watch(folder.path / "localtime");
  folder.write("localtime", "new");
  expectChanges(1);
}

TEST_F(ZoneFilesTest, SeesTheContentBehindLinksReplaced) {
  fs::create_symlink(folder.write("zones/Berlin", "old rules"), folder.path / "localtime");
  watch(folder.path / "localtime");
  fs::rename(folder.write("zones/new", "new rules"), folder.path / "zones/Berlin");
  expectChanges(1);
}

TEST_F(ZoneFilesTest, TakesABurstForOneChangeAndNeighboursForNone) {
  watch(folder.write("localtime", "old"));
  for (int i = 0; i < 20; ++i) folder.write("localtime", std::to_string(i));
  folder.write("hosts", "no concern");
  const auto enough = loop->after(std::chrono::milliseconds(400), [this] { loop->quit(0); });
  loop->run();
  EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace orvane::host
