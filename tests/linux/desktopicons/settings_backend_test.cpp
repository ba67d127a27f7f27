#include "linux/desktopicons/settings_backend.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../gio/private_bus.h"
#include "backend_answers.h"
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

TEST(SettingsBackendTest, ADamagedRecordGivesTheIconsBackByTheDesktopsOwnChoice) {
  for (const auto& desktop : desktops()) {
    SCOPED_TRACE(desktop.name);
    const auto value = SettingsValue::find(desktop.key.schema, desktop.key.key);
    const auto backend = makeSettingsBackend(desktop.key);
    ASSERT_TRUE(value && backend);
    for (const std::string before : {"17", "'", "no value at all", "@", "\xff"}) {
      ASSERT_TRUE(value->set(desktop.key.hidden));
      EXPECT_TRUE(givenBack(*backend, {before, desktop.key.hidden}));
      EXPECT_EQ(value->userText(), "");
    }
    ASSERT_TRUE(value->set(desktop.choice));
    EXPECT_TRUE(givenBack(*backend, {desktop.choice, "no value at all"}));
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

}  // namespace
}  // namespace orvane::host::desktopicons
