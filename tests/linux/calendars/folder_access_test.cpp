// What the store says of places that it may not read. Root is refused nothing, so this program
// runs its tests as somebody else when root starts it.

#include <gmock/gmock.h>
#include <grp.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

#include "store_fixture.h"

namespace orvane::host {
namespace {

using std::filesystem::perms;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr auto granted = EKAuthorizationStatus::fullAccess;
constexpr auto denied = EKAuthorizationStatus::denied;

class FolderAccessTest : public StoreFixture {
 protected:
  void permit(const std::string& name, unsigned mode) {
    std::filesystem::permissions(folder_.root() / name, perms(mode));
  }
  void expectBoth(EKAuthorizationStatus events, EKAuthorizationStatus reminders) {
    open();
    const auto eventGrant = request(EKEntityType::event);
    const auto reminderGrant = request(EKEntityType::reminder);
    EXPECT_EQ(eventGrant.granted, events == granted);
    EXPECT_EQ(reminderGrant.granted, reminders == granted);
    EXPECT_FALSE(eventGrant.error || reminderGrant.error) << "a refusal is no failure";
    EXPECT_EQ(status(EKEntityType::event), events);
    EXPECT_EQ(status(EKEntityType::reminder), reminders);
  }
};

TEST_F(FolderAccessTest, RunsAsSomebodyWhoCanBeRefused) { ASSERT_NE(geteuid(), 0U); }

TEST_F(FolderAccessTest, IsUndeterminedBeforeTheFirstRequest) {
  open();
  EXPECT_EQ(status(EKEntityType::event), EKAuthorizationStatus::notDetermined);
  EXPECT_EQ(status(EKEntityType::reminder), EKAuthorizationStatus::notDetermined);
}

TEST_F(FolderAccessTest, NoCalendarAtAllIsNoRefusal) { expectBoth(granted, granted); }

TEST_F(FolderAccessTest, NoPlaceAtAllIsNoRefusal) {
  options_.roots = {(folder_.base() / "none").string()};
  expectBoth(granted, granted);
}

TEST_F(FolderAccessTest, OneKindAloneIsNoRefusalOfTheOther) {
  folder_.calendar("c/a.ics", event("a", "A"));
  expectBoth(granted, granted);
}

TEST_F(FolderAccessTest, AFolderWithoutPermissionRefusesBothKinds) {
  folder_.calendar("c/a.ics", event("a", "A"));
  permit("c", 0000);
  expectBoth(denied, denied);
  EXPECT_THAT(calendars(), IsEmpty());
}

TEST_F(FolderAccessTest, AFolderThatMayBeListedButNotEnteredRefusesToo) {
  folder_.calendar("c/a.ics", event("a", "A"));
  permit("c", 0444);
  expectBoth(denied, denied);
}

TEST_F(FolderAccessTest, ARootWithoutPermissionRefusesToo) {
  folder_.calendar("c/a.ics", event("a", "A"));
  permit("", 0000);
  expectBoth(denied, denied);
  permit("", 0700);
}

TEST_F(FolderAccessTest, UnreadableFilesRefuseBothKinds) {
  folder_.calendar("c/a.ics", event("a", "A"));
  permit("c/a.ics", 0000);
  expectBoth(denied, denied);
  EXPECT_THAT(calendars(), IsEmpty());
}

TEST_F(FolderAccessTest, AnUnreadableSingleFileRefusesBothKinds) {
  folder_.calendar("a.ics", event("a", "A"));
  permit("a.ics", 0000);
  expectBoth(denied, denied);
}

TEST_F(FolderAccessTest, AnUnreadableFileAmongGoodOnesIsPassedOver) {
  folder_.calendar("c/a.ics", event("a", "A"));
  folder_.calendar("c/b.ics", event("b", "B"));
  permit("c/a.ics", 0000);
  expectBoth(granted, granted);
  EXPECT_THAT(eventTitles(), ElementsAre("B"));
}

TEST_F(FolderAccessTest, AnUnreadableFolderAmongGoodOnesIsPassedOver) {
  folder_.calendar("bad/a.ics", event("a", "A"));
  folder_.calendar("good/b.ics", event("b", "B") + "\nTASK t|T|0");
  permit("bad", 0000);
  expectBoth(granted, granted);
  EXPECT_THAT(calendarTitles(), ElementsAre("good"));
  EXPECT_THAT(eventTitles(), ElementsAre("B"));
}

TEST_F(FolderAccessTest, AKindIsRefusedWhereNothingOfItCanBeRead) {
  folder_.calendar("events/a.ics", event("a", "A"));
  folder_.calendar("tasks/t.ics", "TASK t|T|0");
  permit("tasks", 0000);
  expectBoth(granted, denied);
}

TEST_F(FolderAccessTest, TheStateFollowsPermissionsLater) {
  folder_.calendar("c/a.ics", event("a", "A"));
  expectBoth(granted, granted);
  permit("c", 0000);
  ASSERT_TRUE(runUntilAnnounced());
  ASSERT_TRUE(runUntil([&] { return status(EKEntityType::event) == denied; }));
  announcements_ = 0;
  permit("c", 0700);
  ASSERT_TRUE(runUntilAnnounced());
  ASSERT_TRUE(runUntil([&] { return status(EKEntityType::event) == granted; }));
  EXPECT_THAT(eventTitles(), ElementsAre("A"));
}

TEST_F(FolderAccessTest, SeesAClosedFileOpened) {
  folder_.calendar("c/a.ics", event("a", "A"));
  permit("c/a.ics", 0000);
  expectBoth(denied, denied);
  permit("c/a.ics", 0600);
  ASSERT_TRUE(runUntilAnnounced());
  EXPECT_THAT(eventTitles(), ElementsAre("A"));
  EXPECT_EQ(status(EKEntityType::event), granted);
}

}  // namespace
}  // namespace orvane::host

namespace {

constexpr unsigned nobody = 65534;

// A copy of the reader where everybody may run it.
struct PublicReader {
  PublicReader() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "orvane-reader-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no scratch folder");
    folder = pattern;
    std::filesystem::permissions(folder, std::filesystem::perms(0755));
    std::filesystem::copy_file(orvane::host::CalendarFolder::plainReader, path());
    std::filesystem::permissions(path(), std::filesystem::perms(0755));
  }
  PublicReader(const PublicReader&) = delete;
  ~PublicReader() { std::filesystem::remove_all(folder); }
  [[nodiscard]] std::filesystem::path path() const { return folder / "plain-reader"; }

  std::filesystem::path folder;
};

bool becomeNobody() {
  if (setgroups(0, nullptr) != 0 || setresgid(nobody, nobody, nobody) != 0 ||
      setresuid(nobody, nobody, nobody) != 0) {
    return false;
  }
  // Leak checkers look at the process from outside.
  return prctl(PR_SET_DUMPABLE, 1) == 0;
}

int runAsNobody() {
  const PublicReader reader;
  orvane::host::CalendarFolder::plainReader = reader.path();
  const pid_t child = fork();
  if (child == 0) std::exit(becomeNobody() ? RUN_ALL_TESTS() : 1);
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child) return 1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

}  // namespace

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  if (geteuid() != 0 || GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
  return runAsNobody();
}
