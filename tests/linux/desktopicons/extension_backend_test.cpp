#include "linux/desktopicons/extension_backend.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "backend_answers.h"
#include "linux/desktopicons/icon_switch.h"
#include "linux/desktopicons/settings_value.h"

namespace orvane::host::desktopicons {
namespace {

namespace fs = std::filesystem;

class ExtensionBackendTest : public testing::Test {
 protected:
  using Texts = std::vector<std::string>;
  void SetUp() override {
    for (const auto& extension : icons_) install("user", extension);
  }
  void TearDown() override {
    EXPECT_TRUE(disabledList_->set(""));
    fs::remove_all(folder_);
  }

  static fs::path makeFolder() {
    std::string pattern = (fs::temp_directory_path() / "orvane-extensions-XXXXXX").string();
    return mkdtemp(pattern.data());
  }
  void install(const std::string& place, const std::string& extension) const {
    fs::create_directories(folder_ / place / extension);
    std::ofstream(folder_ / place / extension / "metadata.json") << "{}";
  }
  void uninstall(const std::string& extension) const {
    fs::remove_all(folder_ / "user" / extension);
  }

  std::optional<SettingsValue> disabledList_ =
      SettingsValue::find("org.gnome.shell", "disabled-extensions");
  const fs::path folder_ = makeFolder();
  std::unique_ptr<IconBackend> backend_ =
      makeExtensionBackend({folder_ / "user", folder_ / "system", folder_ / "missing"});
  const Texts icons_ = {"ding@rastersoft.com", "gtk4-ding@smedius.gitlab.com",
                        "desktop-icons@csoriano"};
};

TEST_F(ExtensionBackendTest, AnUnsetListIsUnsetAgain) {
  const auto state = captured(*backend_);
  EXPECT_TRUE(hidden(*backend_, state));
  EXPECT_EQ(disabledList_->texts(), icons_);
  EXPECT_TRUE(givenBack(*backend_, state));
  EXPECT_EQ(disabledList_->userText(), "");
}

TEST_F(ExtensionBackendTest, AnEmptyListStaysSet) {
  ASSERT_TRUE(disabledList_->setTexts({}));
  const auto state = captured(*backend_);
  EXPECT_TRUE(hidden(*backend_, state));
  EXPECT_TRUE(givenBack(*backend_, state));
  EXPECT_EQ(disabledList_->userText(), "@as []");
}

TEST_F(ExtensionBackendTest, OthersInTheListStay) {
  ASSERT_TRUE(disabledList_->setTexts({"dock@example.org", icons_[0]}));
  const auto state = captured(*backend_);
  EXPECT_TRUE(hidden(*backend_, state));
  EXPECT_EQ(disabledList_->texts(), (Texts{"dock@example.org", icons_[0], icons_[1], icons_[2]}));
  ASSERT_TRUE(
      disabledList_->setTexts({"dock@example.org", icons_[0], icons_[1], icons_[2], "new@x"}));
  EXPECT_TRUE(givenBack(*backend_, state));
  EXPECT_EQ(disabledList_->texts(), (Texts{"dock@example.org", icons_[0], "new@x"}));
}

TEST_F(ExtensionBackendTest, AListThatTheUserResetMeanwhileStaysUnset) {
  ASSERT_TRUE(disabledList_->setTexts({"dock@example.org"}));
  const auto state = captured(*backend_);
  EXPECT_TRUE(hidden(*backend_, state));
  ASSERT_TRUE(disabledList_->set(""));
  EXPECT_TRUE(givenBack(*backend_, state));
  EXPECT_EQ(disabledList_->userText(), "");
}

TEST_F(ExtensionBackendTest, AListThatTheUserEmptiedMeanwhileStaysSet) {
  const auto state = captured(*backend_);
  EXPECT_TRUE(hidden(*backend_, state));
  ASSERT_TRUE(disabledList_->setTexts({}));
  EXPECT_TRUE(givenBack(*backend_, state));
  EXPECT_EQ(disabledList_->userText(), "@as []");
}

TEST_F(ExtensionBackendTest, HidingTwiceAddsOnce) {
  const auto state = captured(*backend_);
  EXPECT_TRUE(hidden(*backend_, state));
  EXPECT_TRUE(hidden(*backend_, state));
  EXPECT_EQ(disabledList_->texts(), icons_);
}

TEST_F(ExtensionBackendTest, OnlyWhatIsInstalledIsDisabled) {
  uninstall(icons_[0]);
  uninstall(icons_[2]);
  install("system", icons_[2]);
  install("user", "dock@example.org");
  const auto state = captured(*backend_);
  EXPECT_TRUE(hidden(*backend_, state));
  EXPECT_EQ(disabledList_->texts(), (Texts{icons_[1], icons_[2]}));
  EXPECT_TRUE(givenBack(*backend_, state));
  EXPECT_EQ(disabledList_->userText(), "");
}

TEST_F(ExtensionBackendTest, WhereNoneIsInstalledNothingIsWritten) {
  for (const auto& extension : icons_) uninstall(extension);
  fs::create_directories(folder_ / "system" / icons_[0]);  // what an unclean removal leaves
  const auto memory = folder_ / "state" / "desktop-icons";
  IconSwitch icons(std::move(backend_), IconMemory(memory));
  icons.request(IconWish::hide);
  icons.request(IconWish::hide);
  EXPECT_EQ(disabledList_->userText(), "");
  EXPECT_FALSE(fs::exists(memory));
  icons.request(IconWish::show);
  EXPECT_EQ(disabledList_->userText(), "");
}

TEST_F(ExtensionBackendTest, WhatIsDisabledAlreadyIsNotRemembered) {
  ASSERT_TRUE(disabledList_->setTexts(icons_));
  std::optional<IconState> state = IconState{};
  backend_->capture([&](const std::optional<IconState>& answer) { state = answer; });
  EXPECT_EQ(state, std::nullopt);
}

TEST_F(ExtensionBackendTest, WhatWasUninstalledMeanwhileIsTakenFromTheList) {
  const auto state = captured(*backend_);
  EXPECT_TRUE(hidden(*backend_, state));
  for (const auto& extension : icons_) uninstall(extension);
  EXPECT_TRUE(givenBack(*backend_, state));
  EXPECT_EQ(disabledList_->userText(), "");
}

TEST(ShellExtensionFoldersTest, TheUsersOwnComesFirst) {
  const auto folders = shellExtensionFolders();
  ASSERT_GE(folders.size(), 2u);
  EXPECT_EQ(folders.front(), fs::path(g_get_user_data_dir()) / "gnome-shell/extensions");
  EXPECT_EQ(folders[1], fs::path(g_get_system_data_dirs()[0]) / "gnome-shell/extensions");
}

}  // namespace
}  // namespace orvane::host::desktopicons
