#include "linux/mainloop/clock_watcher.h"

#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>
#include <optional>
#include <vector>

#include "fake_wall_timer.h"
#include "linux/mainloop/main_loop.h"
#include "linux/mainloop/zone_files.h"
#include "support/scratch_folder.h"

namespace orvane::host {
namespace {

namespace fs = std::filesystem;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

class ClockWatcherTest : public testing::Test {
 protected:
  // Days of 24 hours that begin `offset` seconds after UTC's.
  Date startOfNextDay(Date date) const {
    return {(std::floor((date.secondsSince1970 - offset) / 86400) + 1) * 86400 + offset};
  }
  void watch() {
    ClockWatcherOptions options;
    options.startOfNextDay = [this](Date date) { return startOfNextDay(date); };
    options.localtime = folder / "localtime";
    options.timer = clock.makeTimer();
    options.suspendedTime = [this] { return suspended; };
    watcher = makeClockWatcher(*loop, std::move(options),
                               [this](ClockChange change) { changes.push_back(change); });
  }
  ScratchFolder folder;
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
  fs::create_symlink(folder.write("zones/Berlin", "TZif Berlin"), folder / "localtime");
  watch();
  offset = -3600;
  fs::create_symlink(folder.write("zones/Tokyo", "TZif Tokyo"), folder / "new");
  fs::rename(folder / "new", folder / "localtime");
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
  const ScratchFolder folder;
  const auto content = folder.write("zones/Europe/Berlin", "x");
  fs::create_symlink("../zones/Europe/Berlin",
                     (fs::create_directory(folder / "etc"), folder / "etc/middle"));
  fs::create_symlink(folder / "etc/middle", folder / "localtime");
  EXPECT_THAT(linkChain(folder / "localtime"),
              ElementsAre(folder / "localtime", folder / "etc/middle", content));
}

TEST(LinkChain, EndsWhereTheLinksRunInACircleOrLeadNowhere) {
  const ScratchFolder folder;
  fs::create_symlink("b", folder / "a");
  fs::create_symlink("a", folder / "b");
  EXPECT_THAT(linkChain(folder / "a"), ElementsAre(folder / "a", folder / "b"));
  EXPECT_THAT(linkChain(folder / "none"), ElementsAre(folder / "none"));
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
  ScratchFolder folder;
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
  watch(folder / "localtime");
  folder.write("localtime", "new");
  expectChanges(1);
}

TEST_F(ZoneFilesTest, SeesTheContentBehindLinksReplaced) {
  fs::create_symlink(folder.write("zones/Berlin", "old rules"), folder / "localtime");
  watch(folder / "localtime");
  fs::rename(folder.write("zones/new", "new rules"), folder / "zones/Berlin");
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
