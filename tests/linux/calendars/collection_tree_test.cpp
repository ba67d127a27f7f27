#include "linux/calendars/collection_tree.h"

#include <gmock/gmock.h>

#include <map>

#include "calendar_folder.h"

namespace orvane::host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

// The search on real directories, which are listed each time.
class CollectionTreeTest : public testing::Test {
 protected:
  CollectionTree find() {
    std::map<std::string, FolderFacts> known;
    std::vector<std::string> paths;
    for (const auto& root : roots) paths.push_back(root.string());
    return findCollections(
        paths, [&](const std::string& directory, FolderRole role) -> auto& {
          auto listing = listDirectory(directory);
          FolderFacts facts{listing.state,
                            !listing.items.empty(),
                            listing.holdsOtherFiles,
                            false,
                            listing.displayName,
                            listing.folders,
                            listing.brokenLinks,
                            {},
                            {}};
          for (const auto& item : listing.items) {
            if (role == FolderRole::root) facts.itemNames.push_back(item.name);
            if (item.linkTarget) facts.itemLinks.push_back({item.name, *item.linkTarget});
          }
          return known[directory] = facts;
        });
  }
  std::vector<std::string> titles() {
    std::vector<std::string> titles;
    for (const auto& collection : find().collections) titles.push_back(collection.title);
    return titles;
  }
  void link(const std::string& target, const std::string& path) {
    std::filesystem::create_directory_symlink(target, folder.root() / path);
  }

  CalendarFolder folder;
  std::vector<std::filesystem::path> roots{folder.root()};
};

TEST_F(CollectionTreeTest, EverySubFolderIsACalendar) {
  folder.write("Work/a.ics", "");
  folder.makeFolder("Empty");
  folder.makeFolder(".hidden");
  EXPECT_THAT(titles(), UnorderedElementsAre("Work", "Empty"));
}

TEST_F(CollectionTreeTest, AFileAtThatLevelIsACalendarNamedAfterItself) {
  folder.write("Holidays.ics", "");
  folder.write("notes.txt", "");
  EXPECT_THAT(titles(), ElementsAre("Holidays"));
}

TEST_F(CollectionTreeTest, AFolderOfFoldersIsAnAccount) {
  folder.write("Account/One/a.ics", "");
  folder.makeFolder("Account/Two");
  folder.makeFolder("Account/.state");
  folder.write("Account/.token", "");
  EXPECT_THAT(titles(), UnorderedElementsAre("One", "Two"));
}

TEST_F(CollectionTreeTest, AFolderWithAFileInItIsACalendarWhateverElseItHolds) {
  folder.write("Mixed/a.ics", "");
  folder.makeFolder("Mixed/inner");
  folder.write("Named/displayname", "Told");
  folder.makeFolder("Named/inner");
  EXPECT_THAT(titles(), UnorderedElementsAre("Mixed", "Told"));
}

TEST_F(CollectionTreeTest, AccountsDoNotNest) {
  folder.makeFolder("Account/Calendar/inner");
  EXPECT_THAT(titles(), ElementsAre("Calendar"));
}

TEST_F(CollectionTreeTest, OneRealPathIsOneCalendar) {
  folder.write("Team/a.ics", "");
  link("Team", "Also team");
  link("../calendars/Team", "Z team");
  roots.push_back(folder.base() / "again");
  std::filesystem::create_directory_symlink(folder.root(), folder.base() / "again");
  EXPECT_THAT(titles(), ElementsAre("Team"));
}

TEST_F(CollectionTreeTest, AFolderElsewhereIsNamedAsItWasLinked) {
  std::filesystem::create_directory(folder.base() / "x93");
  std::filesystem::create_directory_symlink(folder.base() / "x93", folder.root() / "Shared");
  EXPECT_THAT(titles(), ElementsAre("Shared"));
  std::ofstream(folder.base() / "x93" / "displayname") << "Ours";
  EXPECT_THAT(titles(), ElementsAre("Ours"));
}

TEST_F(CollectionTreeTest, OneFileIsOneCalendarHoweverOftenLinked) {
  folder.write("Real.ics", "");
  std::filesystem::create_symlink("Real.ics", folder.root() / "Alias.ics");
  EXPECT_THAT(titles(), ElementsAre("Real"));
}

TEST_F(CollectionTreeTest, CyclesEnd) {
  folder.makeFolder("self");
  link("../self", "self/self");
  folder.makeFolder("up");
  link("../../calendars", "up/again");
  folder.makeFolder("a");
  folder.makeFolder("b");
  link("../b", "a/to b");
  link("../a", "b/to a");
  link("round", "round");
  EXPECT_THAT(titles(), UnorderedElementsAre("self", "up"));
}

TEST_F(CollectionTreeTest, IdentifiersComeFromTheRealPathAndOutliveADisplayName) {
  folder.write("Work/a.ics", "");
  folder.write("Play/a.ics", "");
  const auto before = find().collections;
  ASSERT_THAT(before, SizeIs(2));
  EXPECT_NE(before[0].identifier, before[1].identifier);
  folder.write("Play/displayname", "Fun");
  folder.write("Work/displayname", "Toil");
  const auto after = find().collections;
  ASSERT_THAT(after, SizeIs(2));
  EXPECT_EQ(after[0].title, "Fun");
  EXPECT_EQ(after[0].identifier, before[0].identifier);
  EXPECT_EQ(after[1].identifier, before[1].identifier);
}

TEST_F(CollectionTreeTest, IdentifiersAreTheSameForever) {
  // Settings hold them: a change here would lose the user's selection.
  roots = {"/nowhere/at/all"};
  const auto nothing = find();
  EXPECT_THAT(nothing.collections, IsEmpty());
  FolderFacts root;
  root.state = DirectoryListing::State::listed;
  root.folders = {{"Work", "/somewhere/Work", false}};
  FolderFacts work;
  work.state = DirectoryListing::State::listed;
  const auto tree = findCollections(
      {"/"}, [&](const std::string& path, FolderRole) -> auto& {
        return path == "/" ? root : work;
      });
  ASSERT_THAT(tree.collections, SizeIs(1));
  EXPECT_EQ(tree.collections[0].identifier, "ics-ad4165bc1e18e623");
}

TEST_F(CollectionTreeTest, WatchesTheNearestDirectoryOfWhatIsMissing) {
  roots = {folder.base() / "not/yet/there"};
  const auto tree = find();
  EXPECT_THAT(tree.collections, IsEmpty());
  ASSERT_TRUE(tree.rules.contains(folder.base().string()));
  const auto& rule = tree.rules.at(folder.base().string()).at(0);
  EXPECT_EQ(rule.names, WatchedNames::one);
  EXPECT_EQ(rule.name, "not");
}

TEST_F(CollectionTreeTest, TenThousandEmptyFoldersAreTenThousandCalendars) {
  for (int i = 0; i < 10000; ++i) folder.makeFolder("c" + std::to_string(i));
  EXPECT_THAT(find().collections, SizeIs(10000));
}

}  // namespace
}  // namespace orvane::host
