#include "linux/calendars/directory_listing.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "calendar_folder.h"

namespace orvane::host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DirectoryListingTest : public testing::Test {
 protected:
  DirectoryListing list(const std::string& path = "") {
    return listDirectory((folder.root() / path).lexically_normal().string());
  }
  std::vector<std::string> itemNames() {
    std::vector<std::string> names;
    for (const auto& item : listDirectory(folder.root().string()).items) names.push_back(item.name);
    return names;
  }
  std::uint64_t stamp() { return listDirectory(folder.root().string()).items.at(0).stamp; }

  CalendarFolder folder;
};

TEST(ItemNameTest, EndsInIcsAndIsNotHidden) {
  for (const char* name : {"a.ics", "A.ICS", "x.y.ics", "ü.ics", " .ics"}) {
    EXPECT_TRUE(isItemName(name)) << name;
  }
  for (const char* name : {".ics", ".a.ics", "a.ics.tmp", "a.icsX7d2", "a.ics~", "#a.ics#", "ics",
                           "a.vcf", "", "displayname"}) {
    EXPECT_FALSE(isItemName(name)) << name;
  }
}

TEST_F(DirectoryListingTest, ListsItemsByName) {
  for (const char* name : {"b.ics", "a.ics", "C.ICS", ".d.ics", "e.ics.tmp"})
    folder.write(name, "");
  EXPECT_THAT(itemNames(), ElementsAre("C.ICS", "a.ics", "b.ics"));
}

TEST_F(DirectoryListingTest, TakesOnlyFilesForItems) {
  folder.makeFolder("folder.ics");
  ASSERT_EQ(mkfifo((folder.root() / "fifo.ics").c_str(), 0600), 0);
  std::filesystem::create_symlink("/dev/zero", folder.root() / "device.ics");
  const auto listing = listDirectory(folder.root().string());
  EXPECT_THAT(listing.items, IsEmpty());
  ASSERT_EQ(listing.folders.size(), 1U);
  EXPECT_EQ(listing.folders[0].name, "folder.ics");
  EXPECT_TRUE(listing.holdsOtherFiles);
}

TEST_F(DirectoryListingTest, FollowsLinks) {
  folder.write("real/item.ics", "");
  std::filesystem::create_symlink("real", folder.root() / "a link");
  std::filesystem::create_symlink("real/item.ics", folder.root() / "linked.ics");
  std::filesystem::create_symlink("nowhere", folder.root() / "broken");
  std::filesystem::create_symlink("/no/where.ics", folder.root() / "broken.ics");
  std::filesystem::create_symlink("round.ics", folder.root() / "round.ics");
  const auto listing = listDirectory(folder.root().string());
  ASSERT_EQ(listing.folders.size(), 2U);
  EXPECT_EQ(listing.folders[0].name, "real");
  EXPECT_FALSE(listing.folders[0].isLink);
  EXPECT_EQ(listing.folders[1].name, "a link");
  EXPECT_TRUE(listing.folders[1].isLink);
  EXPECT_EQ(listing.folders[1].realPath, listing.folders[0].realPath);
  ASSERT_EQ(listing.items.size(), 1U);
  EXPECT_EQ(listing.items[0].linkTarget, (folder.root() / "real/item.ics").string());
  EXPECT_THAT(listing.brokenLinks,
              testing::UnorderedElementsAre((folder.root() / "nowhere").string(), "/no/where.ics",
                                            (folder.root() / "round.ics").string()));
  EXPECT_FALSE(listing.holdsOtherFiles);
}

TEST_F(DirectoryListingTest, StampsTellVersionsApart) {
  folder.write("a.ics", "one");
  const auto first = stamp();
  EXPECT_EQ(stamp(), first);
  folder.write("a.ics", "longer");
  const auto second = stamp();
  EXPECT_NE(second, first);
  folder.replace("a.ics", "x");
  EXPECT_NE(stamp(), second);
  EXPECT_NE(stamp(), 0U);
}

TEST_F(DirectoryListingTest, KnowsAFileThatMayStillBeChanging) {
  folder.write("a.ics", "one");
  folder.write("old.ics", "one");
  const auto listing = listDirectory(folder.root().string());
  EXPECT_TRUE(listing.items[0].isFresh);
}

TEST_F(DirectoryListingTest, ReadsTheDisplayName) {
  folder.write("displayname", "  Family \xE4\n");
  EXPECT_EQ(list().displayName, "Family \xEF\xBF\xBD");
  folder.write("displayname", "\n\n");
  EXPECT_EQ(list().displayName, std::nullopt);
  folder.write("displayname", std::string(10'000'000, 'x'));
  EXPECT_EQ(list().displayName->size(), 200U);
}

TEST_F(DirectoryListingTest, IsNotHeldUpByAPipeOfThatName) {
  ASSERT_EQ(mkfifo((folder.root() / "displayname").c_str(), 0600), 0);
  EXPECT_EQ(list().displayName, std::nullopt);
}

TEST_F(DirectoryListingTest, TellsWhatIsNotThere) {
  folder.write("file", "");
  EXPECT_EQ(listDirectory((folder.root() / "none").string()).state,
            DirectoryListing::State::missing);
  EXPECT_EQ(listDirectory((folder.root() / "file").string()).state,
            DirectoryListing::State::missing);
}

}  // namespace
}  // namespace orvane::host
