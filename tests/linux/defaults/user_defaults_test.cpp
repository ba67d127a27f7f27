#include "linux/defaults/user_defaults.h"

#include <gmock/gmock.h>

#include <cmath>
#include <map>

#include "fakes/manual_main_actor.h"
#include "scratch.h"

namespace orvane::host {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

using Texts = std::vector<std::string>;

class UserDefaultsTest : public testing::Test {
 protected:
  void open() { defaults = makeUserDefaults(path, actor); }
  void reopen() {
    defaults.reset();
    open();
  }
  std::string openAndHear() {
    testing::internal::CaptureStderr();
    open();
    return testing::internal::GetCapturedStderr();
  }
  Scratch scratch;
  fakes::ManualMainActor actor;
  fs::path path = scratch / "defaults.json";
  std::unique_ptr<FileUserDefaults> defaults;
};

TEST_F(UserDefaultsTest, AFreshUserHasNothingAndNoFileIsMade) {
  open();
  EXPECT_EQ(defaults->object("key"), std::nullopt);
  reopen();
  EXPECT_TRUE(scratch.names().empty());
}

TEST_F(UserDefaultsTest, KeepsValuesOfEveryType) {
  open();
  defaults->set("boolean", true);
  defaults->set("number", 0.82);
  defaults->set("text", std::string("Grüße \"☕\"\n"));
  defaults->set("texts", Texts{"b", "a", "b"});
  defaults->set("none", Texts{});
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(defaults->object("boolean"), DefaultsValue(true));
    EXPECT_EQ(defaults->object("number"), DefaultsValue(0.82));
    EXPECT_EQ(defaults->object("text"), DefaultsValue(std::string("Grüße \"☕\"\n")));
    EXPECT_EQ(defaults->object("texts"), DefaultsValue(Texts{"b", "a", "b"}));
    EXPECT_EQ(defaults->object("none"), DefaultsValue(Texts{}));
    reopen();
  }
}

TEST_F(UserDefaultsTest, IsOnTheDiskWithinAQuarterOfASecond) {
  open();
  defaults->set("a", true);
  defaults->set("b", true);
  EXPECT_FALSE(scratch.has("defaults.json"));
  actor.advance(milliseconds(200));
  EXPECT_THAT(scratch.read("defaults.json"), HasSubstr("\"b\": true"));
}

TEST_F(UserDefaultsTest, ContinuousChangesDoNotPutTheWritingOff) {
  open();
  for (int i = 0; i < 20; ++i) {
    defaults->set("n", static_cast<double>(i));
    actor.advance(milliseconds(20));
  }
  EXPECT_TRUE(scratch.has("defaults.json"));
  actor.advance(milliseconds(200));
  EXPECT_THAT(scratch.read("defaults.json"), HasSubstr("19"));
  EXPECT_EQ(actor.pendingTimers(), 0);
}

TEST_F(UserDefaultsTest, ABurstIsWrittenOnce) {
  open();
  actor.holdWorkers();
  for (int i = 0; i < 100; ++i) defaults->set("n", static_cast<double>(i));
  actor.advance(milliseconds(250));
  EXPECT_EQ(actor.pendingWorkers(), 1);
}

TEST_F(UserDefaultsTest, AWritingThatHangsKeepsOneWorkerWaiting) {
  open();
  actor.holdWorkers();
  for (int i = 0; i < 20; ++i) {
    defaults->set("n", static_cast<double>(i));
    actor.advance(milliseconds(200));
  }
  EXPECT_EQ(actor.pendingWorkers(), 1);
  // What was changed meanwhile is written when it has come to its end, and then there is no more.
  EXPECT_TRUE(actor.runOneWorker());
  actor.advance(milliseconds(200));
  EXPECT_TRUE(actor.runOneWorker());
  EXPECT_THAT(scratch.read("defaults.json"), HasSubstr("19"));
  actor.advance(milliseconds(200));
  EXPECT_EQ(actor.pendingWorkers(), 0);
  EXPECT_EQ(actor.pendingTimers(), 0);
}

TEST_F(UserDefaultsTest, FlushesAtTheEndAndOnDemand) {
  open();
  defaults->set("a", true);
  defaults->flush();
  EXPECT_THAT(scratch.read("defaults.json"), HasSubstr("\"a\""));
  defaults->set("b", true);
  defaults.reset();
  EXPECT_THAT(scratch.read("defaults.json"), HasSubstr("\"b\""));
}

TEST_F(UserDefaultsTest, ALateWorkerDoesNotBringOldValuesBack) {
  open();
  actor.holdWorkers();
  defaults->set("n", 1.0);
  actor.advance(milliseconds(200));
  defaults->set("n", 2.0);
  defaults.reset();
  while (actor.runOneWorker()) {
  }
  open();
  EXPECT_EQ(defaults->object("n"), DefaultsValue(2.0));
}

TEST_F(UserDefaultsTest, PreservesKeysThatNobodyAskedForAndTheirOrder) {
  scratch.write("defaults.json",
                R"({"zoo": {"x": [1, null]}, "big": 18446744073709551615, "a": 1})");
  open();
  EXPECT_EQ(defaults->object("zoo"), std::nullopt);
  defaults->set("new", true);
  defaults->set("a", 2.0);
  defaults.reset();
  EXPECT_EQ(scratch.read("defaults.json"), R"({
  "zoo": {
    "x": [
      1,
      null
    ]
  },
  "big": 18446744073709551615,
  "a": 2.0,
  "new": true
}
)");
}

TEST_F(UserDefaultsTest, KeepsTheModeOfTheFileAndMakesNewOnesPrivate) {
  open();
  defaults->set("a", true);
  defaults->flush();
  EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  fs::permissions(path, static_cast<fs::perms>(0644));
  defaults->set("a", false);
  defaults->flush();
  EXPECT_EQ(fs::status(path).permissions(), static_cast<fs::perms>(0644));
  EXPECT_THAT(scratch.names(), ElementsAre("defaults.json"));
}

TEST_F(UserDefaultsTest, MakesMissingFolders) {
  path = scratch / "config" / "orvane" / "defaults.json";
  open();
  defaults->set("a", true);
  defaults.reset();
  EXPECT_TRUE(fs::exists(path));
  EXPECT_EQ(fs::status(scratch / "config").permissions(), fs::perms::owner_all);
}

TEST_F(UserDefaultsTest, WritesWhereALinkLeads) {
  fs::create_directory(scratch / "dotfiles");
  scratch.write("dotfiles/real.json", R"({"a": true})");
  fs::create_symlink("dotfiles/real.json", path);
  open();
  EXPECT_EQ(defaults->object("a"), DefaultsValue(true));
  defaults->set("a", false);
  defaults.reset();
  EXPECT_TRUE(fs::is_symlink(path));
  EXPECT_THAT(scratch.read("dotfiles/real.json"), HasSubstr("false"));
}

TEST_F(UserDefaultsTest, WritesWhereALinkWillLead) {
  fs::create_symlink("later/real.json", path);
  EXPECT_EQ(openAndHear(), "");
  defaults->set("a", false);
  defaults.reset();
  EXPECT_TRUE(fs::is_symlink(path));
  EXPECT_TRUE(scratch.has("later/real.json"));
}

TEST_F(UserDefaultsTest, DamagedFilesAreKeptAsideOneByOne) {
  const Texts damaged{
      "", "{", "[1, 2]", "{\"a\": \"\xff\"}", std::string(5 << 20, ' '), std::string(100000, '[')};
  std::map<std::string, std::string> aside;
  for (std::size_t i = 0; i < damaged.size(); ++i) {
    scratch.write("defaults.json", damaged[i]);
    const auto said = openAndHear();
    EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
    EXPECT_EQ(defaults->object("a"), std::nullopt);
    defaults->set("a", true);
    reopen();
    EXPECT_EQ(defaults->object("a"), DefaultsValue(true));
    defaults.reset();
    const auto suffix = i == 0 ? std::string() : "-" + std::to_string(i + 1);
    aside["defaults.json.damaged" + suffix] = damaged[i];
  }
  for (const auto& [name, text] : aside) EXPECT_EQ(scratch.read(name), text) << name;
  EXPECT_EQ(scratch.names().size(), damaged.size() + 1);
}

TEST_F(UserDefaultsTest, ADamagedFileBehindALinkIsKeptBesideIt) {
  fs::create_directory(scratch / "dotfiles");
  scratch.write("dotfiles/real.json", "damaged");
  fs::create_symlink("dotfiles/real.json", path);
  EXPECT_NE(openAndHear(), "");
  defaults->set("a", true);
  defaults.reset();
  EXPECT_EQ(scratch.read("dotfiles/real.json.damaged"), "damaged");
  EXPECT_THAT(scratch.read("dotfiles/real.json"), HasSubstr("true"));
  EXPECT_TRUE(fs::is_symlink(path));
}

TEST_F(UserDefaultsTest, AFolderInItsPlaceIsPutAside) {
  fs::create_directories(path / "something");
  EXPECT_NE(openAndHear(), "");
  defaults->set("a", true);
  reopen();
  EXPECT_EQ(defaults->object("a"), DefaultsValue(true));
  EXPECT_TRUE(scratch.has("defaults.json.damaged/something"));
}

TEST_F(UserDefaultsTest, APipeInItsPlaceDoesNotBlockAndIsPutAside) {
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  EXPECT_NE(openAndHear(), "");
  defaults->set("a", true);
  defaults.reset();
  EXPECT_TRUE(fs::is_regular_file(path));
  EXPECT_TRUE(fs::is_fifo(scratch / "defaults.json.damaged"));
}

TEST_F(UserDefaultsTest, LinksInACircleArePutAside) {
  fs::create_symlink("other", path);
  fs::create_symlink("defaults.json", scratch / "other");
  EXPECT_NE(openAndHear(), "");
  defaults->set("a", true);
  defaults.reset();
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(path)));
}

TEST_F(UserDefaultsTest, WhatALinkLeadsToStaysWhenItIsNoFile) {
  fs::create_directory(scratch / "documents");
  fs::create_symlink("documents", path);
  EXPECT_NE(openAndHear(), "");
  defaults->set("a", true);
  defaults.reset();
  EXPECT_THAT(scratch.names(),
              UnorderedElementsAre("documents", "defaults.json", "defaults.json.damaged"));
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(path)));
}

TEST_F(UserDefaultsTest, NumbersThatAFileCannotHoldLastAsLongAsTheProgram) {
  open();
  defaults->set("n", std::nan(""));
  defaults->set("good", 1.0);
  EXPECT_TRUE(std::isnan(std::get<double>(*defaults->object("n"))));
  reopen();
  EXPECT_EQ(defaults->object("n"), std::nullopt);
  EXPECT_EQ(defaults->object("good"), DefaultsValue(1.0));
}

TEST_F(UserDefaultsTest, WithoutAPlaceValuesLastAsLongAsTheProgram) {
  path.clear();
  EXPECT_EQ(openAndHear(), "");
  defaults->set("a", true);
  actor.advance(milliseconds(500));
  EXPECT_EQ(defaults->object("a"), DefaultsValue(true));
  defaults.reset();
}

TEST_F(UserDefaultsTest, APlaceThatCannotBeIsSurvivedAndToldOnce) {
  scratch.write("file", "");
  path = scratch / "file" / "defaults.json";
  EXPECT_EQ(openAndHear(), "");
  testing::internal::CaptureStderr();
  for (int i = 0; i < 3; ++i) {
    defaults->set("a", true);
    actor.advance(milliseconds(300));
  }
  const auto said = testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
  EXPECT_EQ(defaults->object("a"), DefaultsValue(true));
  // The next change finds the obstacle gone.
  fs::remove(scratch / "file");
  defaults->set("b", true);
  actor.advance(milliseconds(300));
  EXPECT_THAT(scratch.read("file/defaults.json"), HasSubstr("\"a\": true"));
}

TEST(UserDefaultsPath, LiesWhereTheUserKeepsConfiguration) {
  std::map<std::string, std::string> variables;
  const auto where = [&] {
    return userDefaultsPath([&](const std::string& name) -> std::optional<std::string> {
      const auto found = variables.find(name);
      return found == variables.end() ? std::nullopt : std::optional(found->second);
    });
  };
  EXPECT_EQ(where(), "");
  variables["HOME"] = "/home/ada";
  EXPECT_EQ(where(), "/home/ada/.config/orvane/defaults.json");
  variables["XDG_CONFIG_HOME"] = "relative/counts/not";
  EXPECT_EQ(where(), "/home/ada/.config/orvane/defaults.json");
  variables["XDG_CONFIG_HOME"] = "/etc/ada";
  EXPECT_EQ(where(), "/etc/ada/orvane/defaults.json");
}

}  // namespace
}  // namespace orvane::host
