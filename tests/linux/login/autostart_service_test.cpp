#include "linux/login/autostart_service.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <map>

#include "linux/login/autostart_entry.h"
#include "support/scratch_folder.h"

namespace orvane::host {
namespace {

namespace fs = std::filesystem;

class AutostartServiceTest : public testing::Test {
 protected:
  void SetUp() override {
    entry_ = root_ / "config" / "autostart" / "org.orvane.Orvane.desktop";
    service_ = makeAutostartService({entry_, "/usr/bin/orvane"});
  }

  void write(const std::string& text) const { root_.write(entry_, text); }

  const ScratchFolder root_;
  fs::path entry_;
  std::unique_ptr<SMAppService> service_;
};

TEST_F(AutostartServiceTest, AFreshUserIsNotRegistered) {
  EXPECT_EQ(service_->status(), SMAppServiceStatus::notRegistered);
  EXPECT_FALSE(fs::exists(root_ / "config"));
}

TEST_F(AutostartServiceTest, RegisteringWritesAnEntryForEverybodysEyes) {
  EXPECT_TRUE(service_->registerService());
  EXPECT_EQ(service_->status(), SMAppServiceStatus::enabled);
  struct stat file {};
  ASSERT_EQ(::stat(entry_.c_str(), &file), 0);
  EXPECT_EQ(file.st_mode & 0777U, 0644U);
}

TEST_F(AutostartServiceTest, UnregisteringLeavesNothing) {
  EXPECT_TRUE(service_->registerService());
  EXPECT_TRUE(service_->unregisterService());
  EXPECT_EQ(service_->status(), SMAppServiceStatus::notRegistered);
  EXPECT_TRUE(fs::is_empty(entry_.parent_path()));
  EXPECT_TRUE(service_->unregisterService());
}

TEST_F(AutostartServiceTest, AnEntryThatTheUserDisabledIsNotEnabled) {
  EXPECT_TRUE(service_->registerService());
  std::ofstream(entry_, std::ios::app) << "Hidden=true\n";
  EXPECT_EQ(service_->status(), SMAppServiceStatus::notRegistered);
  EXPECT_TRUE(service_->registerService());
  EXPECT_EQ(service_->status(), SMAppServiceStatus::enabled);
}

TEST_F(AutostartServiceTest, WhatIsNoOrdinaryFileIsNotRead) {
  fs::create_directories(entry_);
  EXPECT_EQ(service_->status(), SMAppServiceStatus::notRegistered);
  EXPECT_FALSE(service_->registerService());
  fs::remove(entry_);
  ASSERT_EQ(::mkfifo(entry_.c_str(), 0600), 0);
  EXPECT_EQ(service_->status(), SMAppServiceStatus::notRegistered);
}

TEST_F(AutostartServiceTest, AHugeFileIsNotRead) {
  write("[Desktop Entry]\nType=Application\nExec=orvane\n#" + std::string(100'000, 'x') + "\n");
  EXPECT_EQ(service_->status(), SMAppServiceStatus::notRegistered);
}

TEST_F(AutostartServiceTest, AFolderWhereAFileIsMakesRegisteringFail) {
  std::ofstream(root_ / "config") << "in the way";
  EXPECT_FALSE(service_->registerService());
  EXPECT_EQ(service_->status(), SMAppServiceStatus::notRegistered);
}

// Root is refused nothing, so the attempt is made by an ordinary user in a process of its own.
TEST_F(AutostartServiceTest, AReadOnlyFolderMakesRegisteringFail) {
  constexpr uid_t nobody = 65534;
  fs::create_directories(entry_.parent_path());
  for (const auto& folder : {root_.path(), root_ / "config"})
    fs::permissions(folder, fs::perms(0755));
  fs::permissions(entry_.parent_path(), fs::perms(0555));
  const pid_t child = fork();
  if (child == 0) {
    if (geteuid() == 0 && setuid(nobody) != 0) _exit(9);
    _exit(service_->registerService() ? 1 : 0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_EQ(service_->status(), SMAppServiceStatus::notRegistered);
  fs::permissions(entry_.parent_path(), fs::perms(0755));
}

TEST_F(AutostartServiceTest, WithoutAPlaceNothingSucceeds) {
  const auto homeless = makeAutostartService({{}, "/usr/bin/orvane"});
  EXPECT_EQ(homeless->status(), SMAppServiceStatus::notFound);
  EXPECT_FALSE(homeless->registerService());
}

TEST(AutostartEntryPathTest, FollowsTheEnvironment) {
  using Variables = std::map<std::string, std::string>;
  const auto path = [](const Variables& variables) {
    return autostartEntryPath([&](const std::string& name) -> std::optional<std::string> {
      const auto found = variables.find(name);
      return found == variables.end() ? std::nullopt : std::optional(found->second);
    });
  };
  const fs::path tail = "autostart/org.orvane.Orvane.desktop";
  EXPECT_EQ(path({{"XDG_CONFIG_HOME", "/c"}, {"HOME", "/h"}}), "/c" / tail);
  EXPECT_EQ(path({{"XDG_CONFIG_HOME", "c"}, {"HOME", "/h"}}), "/h/.config" / tail);
  EXPECT_EQ(path({{"HOME", "/h"}}), "/h/.config" / tail);
  EXPECT_EQ(path({}), fs::path());
}

}  // namespace
}  // namespace orvane::host
