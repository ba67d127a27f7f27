// Bad files never hide good ones, and cost little.

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "store_fixture.h"

namespace orvane::host {
namespace {

using std::chrono::milliseconds;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class FolderBadInputTest : public StoreFixture {
 protected:
  void SetUp() override { folder_.calendar("good/good.ics", event("good", "Good")); }
  void expectGood() {
    openAndRequest();
    EXPECT_EQ(status(EKEntityType::event), EKAuthorizationStatus::fullAccess);
    EXPECT_THAT(eventTitles(), Contains("Good"));
  }
};

TEST_F(FolderBadInputTest, EmptyAndForeignFiles) {
  folder_.write("good/empty.ics", "");
  folder_.write("good/picture.ics", "\x89PNG\r\n");
  folder_.write("empty.ics", "");
  expectGood();
  EXPECT_EQ(status(EKEntityType::reminder), EKAuthorizationStatus::fullAccess);
}

TEST_F(FolderBadInputTest, APipeAndADevice) {
  ASSERT_EQ(mkfifo((folder_.root() / "good/pipe.ics").c_str(), 0666), 0);
  ASSERT_EQ(mkfifo((folder_.root() / "good/displayname").c_str(), 0666), 0);
  std::filesystem::create_symlink("/dev/zero", folder_.root() / "good/device.ics");
  expectGood();
}

TEST_F(FolderBadInputTest, CyclicLinks) {
  std::filesystem::create_directory_symlink("..", folder_.root() / "good/up");
  std::filesystem::create_directory_symlink("loop", folder_.root() / "loop");
  std::filesystem::create_symlink("loop.ics", folder_.root() / "loop.ics");
  folder_.makeFolder("a");
  std::filesystem::create_directory_symlink("../a", folder_.root() / "a/a");
  expectGood();
}

TEST_F(FolderBadInputTest, ACrashingFileIsNotTriedAgainUntilItChanges) {
  folder_.calendar("good/crash.ics", "CRASH");
  expectGood();
  folder_.calendar("good/other.ics", event("other", "Other"));
  ASSERT_TRUE(runUntilAnnounced());
  EXPECT_THAT(eventTitles(), ElementsAre("Good", "Other"));
  EXPECT_THAT(folder_.takeReads(), ElementsAre("good/other.ics"));
  folder_.calendar("good/crash.ics", event("mended", "Mended"));
  ASSERT_TRUE(runUntilAnnounced(2));
  EXPECT_THAT(eventTitles(), Contains("Mended"));
}

TEST_F(FolderBadInputTest, ATooLargeFile) {
  folder_.calendar("good/large.ics", "LARGE");
  expectGood();
}

TEST_F(FolderBadInputTest, AHangingFileDelaysTheRestButHidesNothing) {
  options_.perFile = milliseconds(300);
  folder_.calendar("good/a hang.ics", "HANG");
  expectGood();
}

TEST_F(FolderBadInputTest, QueriesAnswerBeforeAllIsReadAndTheRestIsAnnounced) {
  options_.perFile = milliseconds(2500);
  options_.patience = milliseconds(100);
  for (int i = 0; i < 8; ++i) {
    folder_.calendar("hang/" + std::to_string(i) + ".ics", "HANG");
  }
  folder_.calendar("z/late.ics", event("late", "Late"));
  open();
  request(EKEntityType::event);
  EXPECT_TRUE(runUntil([&] {
    const auto titles = eventTitles();
    return std::find(titles.begin(), titles.end(), "Late") != titles.end();
  }));
  EXPECT_TRUE(runUntilAnnounced());
}

TEST_F(FolderBadInputTest, ABrokenReaderIsAFailureWithASentence) {
  options_.readerPath = "/nowhere/reader";
  open();
  const auto grant = request(EKEntityType::event);
  EXPECT_FALSE(grant.granted);
  ASSERT_TRUE(grant.error.has_value());
  EXPECT_THAT(grant.error->localizedDescription, testing::EndsWith("."));
  EXPECT_EQ(status(EKEntityType::event), EKAuthorizationStatus::denied);
}

TEST_F(FolderBadInputTest, WithNothingToReadABrokenReaderDoesNotMatter) {
  folder_.remove("good");
  options_.readerPath = "/nowhere/reader";
  open();
  EXPECT_TRUE(request(EKEntityType::event).granted);
}

TEST_F(FolderBadInputTest, TenThousandEmptyFolders) {
  for (int i = 0; i < 10000; ++i) folder_.makeFolder("e" + std::to_string(i));
  expectGood();
  EXPECT_THAT(calendars(), SizeIs(10001));
  folder_.calendar("e77/a.ics", event("a", "Needle"));
  ASSERT_TRUE(runUntilAnnounced());
  EXPECT_THAT(eventTitles(), Contains("Needle"));
}

TEST_F(FolderBadInputTest, AHundredThousandItems) {
  // Most are further names of a few files, which are quicker to make.
  std::filesystem::path source;
  for (int i = 0; i < 99999; ++i) {
    const auto name = "many/" + std::to_string(i) + ".ics";
    if (i % 10000 == 0) {
      folder_.calendar(name, "");
      source = folder_.root() / name;
    } else {
      ASSERT_EQ(link(source.c_str(), (folder_.root() / name).c_str()), 0);
    }
  }
  folder_.calendar("many/needle.ics", event("needle", "Needle"));
  expectGood();
  EXPECT_TRUE(runUntil(
      [&] {
        const auto titles = eventTitles();
        return std::find(titles.begin(), titles.end(), "Needle") != titles.end();
      },
      std::chrono::seconds(80)));
}

TEST_F(FolderBadInputTest, NamesThatAreNoText) {
  folder_.calendar("\xff\xfe\n/\xc3\x28.ics", event("odd", "Odd"));
  expectGood();
  EXPECT_THAT(eventTitles(), Contains("Odd"));
  EXPECT_THAT(calendarTitles(), Contains("\xEF\xBF\xBD\xEF\xBF\xBD"));
}

}  // namespace
}  // namespace orvane::host
