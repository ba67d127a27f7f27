#include "linux/desktopicons/settings_backend.h"

#include <gtest/gtest.h>

#include <optional>

#include "../gio/private_bus.h"
#include "linux/desktopicons/extension_backend.h"
#include "linux/desktopicons/settings_value.h"

namespace orvane::host::desktopicons {
namespace {

struct Desktop {
  const char* name;
  SettingsKey key;
  const char* choice;  // another value that a user might have set
};

// The desktops' own schemas, over a store in memory (see the environment of this test program).
const std::vector<Desktop>& desktops() {
  static const std::vector<Desktop> all = {
      {"Cinnamon",
       {"cinnamon", "org.nemo.desktop", "desktop-layout", "'false::false'"},
       "'false::true'"},
      {"MATE", {"mate", "org.mate.background", "show-desktop-icons", "false"}, "true"},
      {"Budgie", {"budgie", "org.buddiesofbudgie.budgie-desktop-view", "show", "false"}, "true"}};
  return all;
}

IconState captured(IconBackend& backend) {
  std::optional<IconState> state;
  backend.capture([&](const std::optional<IconState>& answer) { state = answer; });
  EXPECT_TRUE(state);
  return state.value_or(IconState{});
}
// Answered when the store has it.
bool hidden(IconBackend& backend, const IconState& state) {
  std::optional<Outcome> answer;
  backend.hide(state, [&](Outcome outcome) { answer = outcome; });
  return gio::eventually([&] { return answer.has_value(); }) && answer == Outcome::done;
}
bool givenBack(IconBackend& backend, const IconState& state) {
  std::optional<Outcome> answer;
  backend.giveBack(state, [&](Outcome outcome) { answer = outcome; });
  return gio::eventually([&] { return answer.has_value(); }) && answer == Outcome::done;
}

TEST(SettingsBackendTest, GivesBackAChoiceAndItsAbsenceExactly) {
  for (const auto& desktop : desktops()) {
    SCOPED_TRACE(desktop.name);
    const auto value = SettingsValue::find(desktop.key.schema, desktop.key.key);
    const auto backend = makeSettingsBackend(desktop.key);
    ASSERT_TRUE(value);
    ASSERT_TRUE(backend);
    for (const std::string before : {"", desktop.choice}) {
      ASSERT_TRUE(value->set(before));
      const auto state = captured(*backend);
      EXPECT_TRUE(hidden(*backend, state));
      EXPECT_EQ(value->userText(), desktop.key.hidden);
      EXPECT_TRUE(givenBack(*backend, state));
      EXPECT_EQ(value->userText(), before);
    }
    EXPECT_TRUE(value->set(""));
  }
}

TEST(SettingsBackendTest, AChoiceThatTheUserMadeMeanwhileStays) {
  for (const auto& desktop : desktops()) {
    SCOPED_TRACE(desktop.name);
    const auto value = SettingsValue::find(desktop.key.schema, desktop.key.key);
    const auto backend = makeSettingsBackend(desktop.key);
    ASSERT_TRUE(value && backend);
    const auto state = captured(*backend);
    EXPECT_TRUE(hidden(*backend, state));
    ASSERT_TRUE(value->set(desktop.choice));
    EXPECT_TRUE(givenBack(*backend, state));
    EXPECT_EQ(value->userText(), desktop.choice);
    EXPECT_TRUE(value->set(""));
  }
}

TEST(SettingsBackendTest, AnEndWaitsForTheStoreAndIsAnswered) {
  const auto& desktop = desktops()[0];
  const auto value = SettingsValue::find(desktop.key.schema, desktop.key.key);
  const auto backend = makeSettingsBackend(desktop.key);
  ASSERT_TRUE(value && backend);
  const auto state = captured(*backend);
  std::vector<Outcome> answers;
  backend->hide(state, [&](Outcome outcome) { answers.push_back(outcome); });
  EXPECT_TRUE(answers.empty());
  backend->finish();
  EXPECT_EQ(answers, std::vector<Outcome>{Outcome::done});
  backend->finish();
  // What the thread had to say comes to nobody.
  while (g_main_context_iteration(nullptr, FALSE)) {
  }
  EXPECT_EQ(answers.size(), 1u);
  EXPECT_TRUE(value->set(""));
}

TEST(SettingsBackendTest, WhatIsNotInstalledIsNoDesktop) {
  EXPECT_EQ(makeSettingsBackend({"x", "org.example.none", "show", "false"}), nullptr);
  EXPECT_EQ(makeSettingsBackend({"x", "org.nemo.desktop", "no-such-key", "false"}), nullptr);
  EXPECT_EQ(makeSettingsBackend({"x", "org.nemo.desktop", "desktop-layout", "17"}), nullptr);
}

class ExtensionBackendTest : public testing::Test {
 protected:
  using Texts = std::vector<std::string>;
  void TearDown() override { EXPECT_TRUE(disabledList_->set("")); }

  std::optional<SettingsValue> disabledList_ =
      SettingsValue::find("org.gnome.shell", "disabled-extensions");
  std::unique_ptr<IconBackend> backend_ = makeExtensionBackend();
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

}  // namespace
}  // namespace orvane::host::desktopicons
