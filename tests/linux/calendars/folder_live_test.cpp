// What the store hears of folders that change, from the real inotify.

#include <gmock/gmock.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "store_fixture.h"

namespace orvane::host {
namespace {

using std::chrono::milliseconds;
using std::filesystem::create_directory_symlink;
using std::filesystem::path;
using std::filesystem::rename;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

class FolderLiveTest : public StoreFixture {
 protected:
  // One announcement comes, and no second one.
  void expectOneAnnouncement() { expectAnnouncements(1); }
  // What a look finds that takes longer than the announcement waits for it is announced once more
  // where there is something to read for the first time, or nothing any more.
  void expectOneOrTwoAnnouncements() { expectAnnouncements(2); }
  void expectAnnouncements(int most) {
    ASSERT_TRUE(runUntilAnnounced());
    runFor(milliseconds(200));
    EXPECT_LE(announcements_, most);
    announcements_ = 0;
  }
  path at(const std::string& name) { return folder_.root() / name; }
};

TEST_F(FolderLiveTest, SeesANewFile) {
  folder_.makeFolder("c");
  openAndRequest();
  folder_.calendar("c/a.ics", event("a", "New"));
  expectOneAnnouncement();
  EXPECT_THAT(eventTitles(), ElementsAre("New"));
}

TEST_F(FolderLiveTest, AnnouncesABurstOnce) {
  folder_.makeFolder("c");
  openAndRequest();
  for (int i = 0; i < 50; ++i) {
    folder_.calendar("c/" + std::to_string(i) + ".ics", event(std::to_string(i), "Item"));
  }
  expectOneAnnouncement();
  EXPECT_THAT(events(), SizeIs(50));
}

TEST_F(FolderLiveTest, ReadsOnlyWhatChanged) {
  for (int i = 0; i < 20; ++i) {
    folder_.calendar("c" + std::to_string(i % 4) + "/" + std::to_string(i) + ".ics",
                     event(std::to_string(i), "Item"));
  }
  openAndRequest();
  folder_.calendar("c1/5.ics", event("5", "Changed"));
  expectOneAnnouncement();
  EXPECT_THAT(eventTitles(), testing::Contains("Changed"));
  EXPECT_THAT(folder_.takeReads(), ElementsAre("c1/5.ics"));
}

TEST_F(FolderLiveTest, SeesAnAtomicallyReplacedFile) {
  folder_.calendar("c/a.ics", event("a", "Old"));
  openAndRequest();
  folder_.replace("c/a.ics", event("a", "New"));
  expectOneAnnouncement();
  EXPECT_THAT(eventTitles(), ElementsAre("New"));
}

TEST_F(FolderLiveTest, SeesAFileMadeWithLink) {
  folder_.makeFolder("c");
  folder_.calendar("c/a.icsXy12", event("a", "Linked"));
  openAndRequest();
  ASSERT_EQ(link(at("c/a.icsXy12").c_str(), at("c/a.ics").c_str()), 0);
  std::filesystem::remove(at("c/a.icsXy12"));
  ASSERT_TRUE(runUntilAnnounced());
  EXPECT_THAT(eventTitles(), ElementsAre("Linked"));
}

TEST_F(FolderLiveTest, SeesARemovedAndARenamedFile) {
  folder_.calendar("c/a.ics", event("a", "A"));
  folder_.calendar("c/b.ics", event("b", "B"));
  openAndRequest();
  folder_.remove("c/a.ics");
  expectOneAnnouncement();
  EXPECT_THAT(eventTitles(), ElementsAre("B"));
  rename(at("c/b.ics"), at("c/b.txt"));
  expectOneAnnouncement();
  EXPECT_THAT(eventTitles(), IsEmpty());
  rename(at("c/b.txt"), at("c/c.ics"));
  expectOneAnnouncement();
  EXPECT_THAT(eventTitles(), ElementsAre("B"));
}

TEST_F(FolderLiveTest, DoesNotMindTemporaryFiles) {
  folder_.calendar("c/a.ics", event("a", "A"));
  openAndRequest();
  folder_.write("c/.a.ics.swp", "x");
  folder_.write("c/a.ics.tmp", "x");
  folder_.write("c/a.icsQ8", "x");
  runFor(milliseconds(300));
  EXPECT_EQ(announcements_, 0);
  EXPECT_THAT(folder_.takeReads(), IsEmpty());
}

TEST_F(FolderLiveTest, SeesAWholeFolderComeAndGo) {
  openAndRequest();
  folder_.calendar("New/a.ics", event("a", "A"));
  expectOneOrTwoAnnouncements();
  EXPECT_THAT(calendarTitles(), ElementsAre("New"));
  EXPECT_THAT(eventTitles(), ElementsAre("A"));
  folder_.remove("New");
  expectOneOrTwoAnnouncements();
  EXPECT_THAT(calendarTitles(), IsEmpty());
  EXPECT_THAT(eventTitles(), IsEmpty());
}

TEST_F(FolderLiveTest, SeesAFolderMovedInWithItsContent) {
  openAndRequest();
  const auto outside = folder_.base() / "outside";
  std::filesystem::create_directory(outside);
  folder_.calendar("../outside/a.ics", event("a", "A"));
  rename(outside, at("Inside"));
  expectOneOrTwoAnnouncements();
  EXPECT_THAT(eventTitles(), ElementsAre("A"));
  folder_.calendar("Inside/b.ics", event("b", "B"));
  expectOneAnnouncement();
  EXPECT_THAT(eventTitles(), UnorderedElementsAre("A", "B"));
}

TEST_F(FolderLiveTest, FollowsARenamedFolder) {
  folder_.calendar("Old/a.ics", event("a", "A"));
  openAndRequest();
  rename(at("Old"), at("New"));
  expectOneAnnouncement();
  EXPECT_THAT(calendarTitles(), ElementsAre("New"));
  folder_.calendar("New/a.ics", event("a", "B"));
  expectOneAnnouncement();
  EXPECT_THAT(eventTitles(), ElementsAre("B"));
}

TEST_F(FolderLiveTest, SeesAReplacedFolder) {
  folder_.calendar("c/a.ics", event("a", "A"));
  openAndRequest();
  folder_.remove("c");
  folder_.calendar("c/b.ics", event("b", "B"));
  ASSERT_TRUE(runUntil([&] { return eventTitles() == std::vector<std::string>{"B"}; }));
  announcements_ = 0;
  runFor(milliseconds(300));
  announcements_ = 0;
  folder_.calendar("c/c.ics", event("c", "C"));
  expectOneAnnouncement();
  EXPECT_THAT(eventTitles(), UnorderedElementsAre("B", "C"));
}

TEST_F(FolderLiveTest, SeesChangesBehindALinkedFolderAndOfTheLink) {
  std::filesystem::create_directory(folder_.base() / "one");
  std::filesystem::create_directory(folder_.base() / "two");
  folder_.calendar("../one/a.ics", event("a", "One"));
  folder_.calendar("../two/a.ics", event("a", "Two"));
  create_directory_symlink(folder_.base() / "one", at("Linked"));
  openAndRequest();
  EXPECT_THAT(eventTitles(), ElementsAre("One"));
  folder_.calendar("../one/a.ics", event("a", "One again"));
  expectOneAnnouncement();
  EXPECT_THAT(eventTitles(), ElementsAre("One again"));
  std::filesystem::remove(at("Linked"));
  create_directory_symlink(folder_.base() / "two", at("Linked"));
  expectOneAnnouncement();
  EXPECT_THAT(eventTitles(), ElementsAre("Two"));
}

TEST_F(FolderLiveTest, SeesTheTargetOfABrokenLinkAppear) {
  create_directory_symlink(folder_.base() / "later/there", at("Linked"));
  openAndRequest();
  folder_.calendar("../later/there/a.ics", event("a", "A"));
  ASSERT_TRUE(runUntilAnnounced());
  EXPECT_TRUE(runUntil([&] { return eventTitles() == std::vector<std::string>{"A"}; }));
}

TEST_F(FolderLiveTest, SeesALinkedFileChange) {
  folder_.calendar("../one.ics", event("a", "One"));
  std::filesystem::create_symlink(folder_.base() / "one.ics", at("One.ics"));
  openAndRequest();
  EXPECT_THAT(eventTitles(), ElementsAre("One"));
  folder_.calendar("../one.ics", event("a", "Changed"));
  expectOneAnnouncement();
  EXPECT_THAT(eventTitles(), ElementsAre("Changed"));
}

TEST_F(FolderLiveTest, SeesARootAppearLevelByLevel) {
  options_.roots = {(folder_.base() / "share/orvane/calendars").string()};
  openAndRequest();
  EXPECT_THAT(calendarTitles(), IsEmpty());
  std::filesystem::create_directory(folder_.base() / "share");
  runFor(milliseconds(150));
  std::filesystem::create_directories(folder_.base() / "share/orvane");
  runFor(milliseconds(150));
  folder_.calendar("../share/orvane/calendars/c/a.ics", event("a", "A"));
  ASSERT_TRUE(runUntilAnnounced());
  EXPECT_TRUE(runUntil([&] { return eventTitles() == std::vector<std::string>{"A"}; }));
}

TEST_F(FolderLiveTest, SeesARootGoAndComeBack) {
  folder_.calendar("c/a.ics", event("a", "A"));
  openAndRequest();
  rename(folder_.root(), folder_.base() / "away");
  expectOneOrTwoAnnouncements();
  EXPECT_THAT(calendarTitles(), IsEmpty());
  rename(folder_.base() / "away", folder_.root());
  expectOneOrTwoAnnouncements();
  EXPECT_THAT(eventTitles(), ElementsAre("A"));
}

TEST_F(FolderLiveTest, SeesADisplayNameChange) {
  folder_.calendar("c/a.ics", event("a", "A"));
  openAndRequest();
  const auto before = calendars();
  folder_.write("c/displayname", "Named");
  expectOneAnnouncement();
  EXPECT_THAT(calendarTitles(), ElementsAre("Named"));
  EXPECT_EQ(calendars()[0].calendarIdentifier, before[0].calendarIdentifier);
  EXPECT_THAT(folder_.takeReads(), IsEmpty());
}

TEST_F(FolderLiveTest, AFolderBecomesAReminderListByWhatItHolds) {
  folder_.makeFolder("c");
  openAndRequest();
  folder_.calendar("c/a.ics", "TASK a|Milk|0");
  expectOneOrTwoAnnouncements();
  EXPECT_THAT(calendarTitles(EKEntityType::event), IsEmpty());
  EXPECT_THAT(calendarTitles(EKEntityType::reminder), ElementsAre("c"));
}

TEST_F(FolderLiveTest, KeepsTheOldVersionWhileAFileIsBeingWritten) {
  folder_.calendar("c/a.ics", event("a", "Whole"));
  folder_.calendar("c/b.ics", event("b", "Other"));
  openAndRequest();
  options_.suspicion = milliseconds(60000);
  {
    std::ofstream half(at("c/a.ics"));
    half.flush();
    folder_.calendar("c/b.ics", event("b", "Other again"));
    expectOneAnnouncement();
    EXPECT_THAT(eventTitles(), UnorderedElementsAre("Whole", "Other again"));
    half << "BEGIN:VCALENDAR\n" << event("a", "Rewritten") << "\n";
  }
  expectOneAnnouncement();
  EXPECT_THAT(eventTitles(), UnorderedElementsAre("Rewritten", "Other again"));
}

TEST_F(FolderLiveTest, DropsTheOldVersionOfAFileThatStaysBad) {
  options_.suspicion = milliseconds(100);
  folder_.calendar("c/a.ics", event("a", "Good"));
  openAndRequest();
  folder_.write("c/a.ics", "rubbish");
  ASSERT_TRUE(runUntil([&] { return eventTitles().empty(); }));
  EXPECT_GE(announcements_, 1);
}

TEST_F(FolderLiveTest, RescansSlowlyWhenWatchesRunOut) {
  folder_.calendar("c/a.ics", event("a", "Old"));
  bool hasWatches = false;
  options_.addWatch = [&](int descriptor, const char* directory, std::uint32_t mask) {
    if (hasWatches) return inotify_add_watch(descriptor, directory, mask);
    errno = ENOSPC;
    return -1;
  };
  options_.slowRescan = std::chrono::seconds(1);
  testing::internal::CaptureStderr();
  openAndRequest();
  EXPECT_THAT(eventTitles(), ElementsAre("Old"));
  folder_.calendar("c/a.ics", event("a", "New"));
  folder_.calendar("d/b.ics", event("b", "B"));
  ASSERT_TRUE(runUntilAnnounced());
  EXPECT_THAT(eventTitles(), UnorderedElementsAre("New", "B"));
  runFor(milliseconds(1200));
  EXPECT_EQ(announcements_, 1) << "a rescan that finds nothing is no change";
  // One line, however often watches fail.
  const auto output = testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 1) << output;
  // Once there are watches again they are used.
  hasWatches = true;
  runFor(milliseconds(1300));
  announcements_ = 0;
  folder_.calendar("d/b.ics", event("b", "C"));
  ASSERT_TRUE(runUntil([&] { return announcements_ == 1; }, std::chrono::seconds(5)));
  EXPECT_THAT(eventTitles(), UnorderedElementsAre("New", "C"));
}

TEST_F(FolderLiveTest, AQueryFindsWhatComesWithoutNotice) {
  folder_.calendar("c/a.ics", event("a", "Old"));
  options_.addWatch = [](int, const char*, std::uint32_t) {
    errno = ENOSPC;
    return -1;
  };
  testing::internal::CaptureStderr();
  openAndRequest();
  EXPECT_THAT(eventTitles(), ElementsAre("Old"));
  folder_.calendar("c/a.ics", event("a", "New"));
  folder_.calendar("d/b.ics", event("b", "B"));
  runFor(milliseconds(40));  // younger files are read twice, to be sure
  EXPECT_THAT(eventTitles(), UnorderedElementsAre("New", "B"));
  // Others may have been answered before.
  EXPECT_TRUE(runUntilAnnounced());
  runFor(milliseconds(200));
  announcements_ = 0;
  folder_.takeReads();
  EXPECT_THAT(eventTitles(), UnorderedElementsAre("New", "B"));
  runFor(milliseconds(200));
  EXPECT_EQ(announcements_, 0) << "a query that finds nothing is no change";
  EXPECT_THAT(folder_.takeReads(), IsEmpty());
  EXPECT_NE(testing::internal::GetCapturedStderr(), "");
}

TEST_F(FolderLiveTest, NothingIsCalledOnceTheStoreIsGone) {
  folder_.makeFolder("c");
  openAndRequest();
  folder_.calendar("c/a.ics", event("a", "A"));
  store_.reset();
  runFor(milliseconds(200));
  EXPECT_EQ(announcements_, 0);
}

TEST_F(FolderLiveTest, TheStoreMayGoWhileItReads) {
  folder_.calendar("c/a.ics", "HANG");
  open();
  store_->requestFullAccessToEvents([](bool, const std::optional<EKError>&) { FAIL(); });
  runFor(milliseconds(100));
  store_.reset();
  const auto before = std::chrono::steady_clock::now();
  loop_.reset();
  EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(3));
  loop_ = makeMainLoop();
}

}  // namespace
}  // namespace orvane::host
