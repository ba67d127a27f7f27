#include "linux/files/replace_file.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cerrno>
#include <set>

#include "support/scratch_folder.h"

namespace orvane::host {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

mode_t modeOf(const fs::path& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

std::set<std::string> namesIn(const fs::path& folder) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

TEST(MakeFoldersTest, MakesAllThatAreMissingForTheUserAlone) {
  const ScratchFolder scratch;
  EXPECT_EQ(makeFolders(scratch / "a/b/c"), 0);
  EXPECT_EQ(modeOf(scratch / "a"), 0700U);
  EXPECT_EQ(modeOf(scratch / "a/b/c"), 0700U);
}

TEST(MakeFoldersTest, WhatIsThereIsLeftAsItIs) {
  const ScratchFolder scratch;
  fs::create_directory(scratch / "a");
  fs::permissions(scratch / "a", fs::perms(0755));
  EXPECT_EQ(makeFolders(scratch / "a"), 0);
  EXPECT_EQ(makeFolders(scratch / "a/"), 0);
  EXPECT_EQ(modeOf(scratch / "a"), 0755U);
}

TEST(MakeFoldersTest, ALinkToAFolderIsAFolder) {
  const ScratchFolder scratch;
  fs::create_directory(scratch / "real");
  fs::create_directory_symlink(scratch / "real", scratch / "link");
  EXPECT_EQ(makeFolders(scratch / "link/below"), 0);
  EXPECT_TRUE(fs::is_directory(scratch / "real/below"));
}

TEST(MakeFoldersTest, WhatIsNoFolderIsToldAsAnError) {
  const ScratchFolder scratch;
  scratch.write("file", "");
  fs::create_symlink("loop", scratch / "loop");
  fs::create_symlink("nowhere", scratch / "dangling");
  EXPECT_EQ(makeFolders(scratch / "file"), ENOTDIR);
  EXPECT_EQ(makeFolders(scratch / "file/below"), ENOTDIR);
  EXPECT_EQ(makeFolders(scratch / "loop"), ENOTDIR);
  EXPECT_EQ(makeFolders(scratch / "loop/below"), ELOOP);
  EXPECT_EQ(makeFolders(scratch / "dangling"), ENOTDIR);
}

TEST(ReplaceFileTest, ANewFileIsForTheUserAloneUnlessItIsSaid) {
  const ScratchFolder scratch;
  EXPECT_EQ(replaceFile(scratch / "private", "one"), 0);
  EXPECT_EQ(replaceFile(scratch / "public", "two", 0644), 0);
  EXPECT_EQ(scratch.read("private"), "one");
  EXPECT_EQ(modeOf(scratch / "private"), 0600U);
  EXPECT_EQ(modeOf(scratch / "public"), 0644U);
  EXPECT_THAT(namesIn(scratch.path()), ElementsAre("private", "public"));
}

TEST(ReplaceFileTest, TheModeOfTheOldFileIsKept) {
  const ScratchFolder scratch;
  scratch.write("file", "old");
  fs::permissions(scratch / "file", fs::perms(0640));
  EXPECT_EQ(replaceFile(scratch / "file", "new"), 0);
  EXPECT_EQ(scratch.read("file"), "new");
  EXPECT_EQ(modeOf(scratch / "file"), 0640U);
}

TEST(ReplaceFileTest, WhoHasTheOldFileOpenReadsTheOldText) {
  const ScratchFolder scratch;
  scratch.write("file", "old");
  std::ifstream reader(scratch / "file");
  EXPECT_EQ(replaceFile(scratch / "file", "new"), 0);
  std::string text;
  reader >> text;
  EXPECT_EQ(text, "old");
}

TEST(ReplaceFileTest, AFailureLeavesNothingBehind) {
  const ScratchFolder scratch;
  fs::create_directories(scratch / "folder/inside");
  EXPECT_EQ(replaceFile(scratch / "folder", "text"), EISDIR);
  EXPECT_EQ(replaceFile(scratch / "missing/file", "text"), ENOENT);
  EXPECT_THAT(namesIn(scratch.path()), ElementsAre("folder"));
  EXPECT_THAT(namesIn(scratch / "folder"), ElementsAre("inside"));
}

}  // namespace
}  // namespace orvane::host
