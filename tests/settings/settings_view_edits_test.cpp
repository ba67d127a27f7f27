#include <cmath>
#include <limits>

#include "settings_view_fixture.h"

namespace orvane {
namespace {

using namespace std::string_literals;

using SettingsViewEditsTest = SettingsViewFixture;

TEST_F(SettingsViewEditsTest, EveryToggleSetsItsSettingAndIsStoredAtOnce) {
  const std::pair<const char*, Published<bool> DashboardSettings::*> toggles[] = {
      {"showOnAllSpaces", &DashboardSettings::showOnAllSpaces},
      {"launchAtLogin", &DashboardSettings::launchAtLogin},
      {"hideDesktopIconsInFocus", &DashboardSettings::hideDesktopIconsInFocus},
      {"focusMode", &DashboardSettings::focusMode},
      {"countdownIncludesEvents", &DashboardSettings::countdownIncludesEvents},
      {"countdownIncludesReminders", &DashboardSettings::countdownIncludesReminders},
      {"countdownIncludesAllDayEvents", &DashboardSettings::countdownIncludesAllDayEvents},
      {"urgencyTinting", &DashboardSettings::urgencyTinting}};
  for (const auto& [key, property] : toggles) {
    const bool wanted = !((*settings()).*property).get();
    edit(key, wanted);
    EXPECT_EQ(((*settings()).*property).get(), wanted) << key;
    EXPECT_EQ(contentOf<FormToggle>(key).isOn, wanted) << key;
    EXPECT_EQ(defaults_.values.at("DashboardSettings."s + key), DefaultsValue(wanted)) << key;
  }
}

TEST_F(SettingsViewEditsTest, EveryChoiceOfAPickerCanBeChosen) {
  edit("displayMode", "selected"s);
  for (const auto* key : {"themeMode", "selectedDisplayID", "displayMode"}) {
    for (const auto& choice : contentOf<FormPicker>(key).choices) {
      edit(key, choice.id);
      EXPECT_EQ(contentOf<FormPicker>(key).value, choice.id) << key;
    }
  }
  EXPECT_EQ(*settings()->themeMode, DashboardThemeMode::light);
  EXPECT_EQ(*settings()->selectedDisplayID, "11");
  EXPECT_EQ(*settings()->displayMode, DashboardDisplayMode::selected);
}

TEST_F(SettingsViewEditsTest, AnUnattachedDisplayGivesWayToAutomatic) {
  settings()->displayMode = DashboardDisplayMode::selected;
  settings()->selectedDisplayID = "77"s;
  edit("selectedDisplayID", ""s);
  EXPECT_EQ(*settings()->selectedDisplayID, "");
}

TEST_F(SettingsViewEditsTest, SelectingOneAndThenAllEmptiesTheSelection) {
  offerCalendars({{"w", "Work"}, {"h", "Home"}});
  edit("selectedCalendarIDs/w", true);
  EXPECT_EQ(settings()->selectedCalendarIDs.get(), TextSet{"w"});
  EXPECT_TRUE(calendars().all.isEnabled);
  edit("selectedCalendarIDs.all");
  EXPECT_EQ(settings()->selectedCalendarIDs.get(), TextSet{});
  EXPECT_FALSE(calendars().all.isEnabled);
}

TEST_F(SettingsViewEditsTest, ReminderListsAreSelectedOnTheirOwn) {
  manager()->reminderListOptions = {{"w", "Errands", EKEntityType::reminder}};
  edit("selectedReminderListIDs/w", true);
  EXPECT_EQ(settings()->selectedReminderListIDs.get(), TextSet{"w"});
  EXPECT_TRUE(settings()->selectedCalendarIDs->empty());
  edit("selectedReminderListIDs/w", false);
  EXPECT_TRUE(settings()->selectedReminderListIDs->empty());
  settings()->selectedCalendarIDs = TextSet{"c"};
  settings()->selectedReminderListIDs = TextSet{"w"};
  edit("selectedReminderListIDs.all");
  EXPECT_TRUE(settings()->selectedReminderListIDs->empty());
  EXPECT_EQ(settings()->selectedCalendarIDs.get(), TextSet{"c"});
}

// A switch that arrives late says what is wanted, not that it is to be the other way round.
TEST_F(SettingsViewEditsTest, ARowSwitchedTwiceTheSameWayStaysSo) {
  offerCalendars({{"w", "Work"}});
  edit("selectedCalendarIDs/w", true);
  edit("selectedCalendarIDs/w", true);
  EXPECT_EQ(settings()->selectedCalendarIDs.get(), TextSet{"w"});
}

TEST_F(SettingsViewEditsTest, IdentifiersMayHoldAnyCharacters) {
  offerCalendars({{"a/b.all", "Odd"}, {"", "Nameless"}, {".all", "Dotted"}});
  edit("selectedCalendarIDs/a/b.all", true);
  edit("selectedCalendarIDs/", true);
  edit("selectedCalendarIDs/.all", true);
  EXPECT_EQ(settings()->selectedCalendarIDs.get(), (TextSet{"", "a/b.all", ".all"}));
}

TEST_F(SettingsViewEditsTest, AColourIsWrittenInSixUpperCaseDigitsWithoutOpacity) {
  edit("primaryColorHex", Color::srgb(0.5, 0.999, 11 / 255.0, 0.25));
  EXPECT_EQ(*settings()->primaryColorHex, "#80FF0B");
}

TEST_F(SettingsViewEditsTest, ThePickedColourStaysFinerThanItIsStored) {
  const Color fine = Color::srgb(0.5, 0.25, 0.125);
  edit("primaryColorHex", fine);
  EXPECT_EQ(view().workingColor(), fine);
  settings()->primaryColorHex = "#402010"s;
  EXPECT_EQ(contentOf<FormColorPicker>("primaryColorHex").color,
            Color::srgb(64 / 255.0, 32 / 255.0, 16 / 255.0));
}

TEST_F(SettingsViewEditsTest, PickingTheColourThatStandsInForNoneWritesIt) {
  settings()->primaryColorHex = "reddish"s;
  edit("primaryColorHex", view().workingColor());
  EXPECT_EQ(*settings()->primaryColorHex, "#3D5CF2");
}

TEST_F(SettingsViewEditsTest, TheStrengthIsAnyInTheRange) {
  for (const double strength : {0.45, 0.4500001, 0.7, 0.95}) {
    edit("glassOpacity", strength);
    EXPECT_EQ(*settings()->glassOpacity, strength);
  }
  settings()->glassOpacity = 1.7;
  edit("glassOpacity", 0.95);
  EXPECT_EQ(*settings()->glassOpacity, 0.95);
}

TEST_F(SettingsViewEditsTest, WordsAreTakenAsTheyAreWritten) {
  for (const auto& words : {""s, " , ,Lunch"s, "עברית, 🎂"s, std::string(64 * 1024, 'a')}) {
    edit("ignoredWordsText", words);
    EXPECT_EQ(*settings()->ignoredWordsText, words);
  }
}

TEST_F(SettingsViewEditsTest, ATabIsShownOnceItIsChosen) {
  EXPECT_EQ(view().selectedTab(), "sources");
  for (const auto& tag : {"style"s, "smart"s, "display"s, "sources"s}) {
    edit("selectedTab", tag);
    EXPECT_EQ(view().form().selectedTab, tag);
  }
  EXPECT_TRUE(defaults_.writes.empty());
}

TEST_F(SettingsViewEditsTest, WhatIsSetAlreadyIsNotWrittenAgain) {
  edit("focusMode", false);
  edit("themeMode", "vividBlue"s);
  edit("glassOpacity", 0.82);
  edit("primaryColorHex", view().workingColor());
  EXPECT_TRUE(defaults_.writes.empty());
}

TEST_F(SettingsViewEditsTest, WhatTheFormDoesNotOfferChangesNothing) {
  offerCalendars({{"w", "Work"}});
  const double infinity = std::numeric_limits<double>::infinity();
  const FormEdit foreign[] = {
      {"", {}},
      {"unknown", true},
      {"done", {}},
      {"header", "x"s},
      {"preview", true},
      {"ignoredWordsCaption", "x"s},
      {"focusMode", {}},
      {"focusMode", 1.0},
      {"focusMode", "true"s},
      {"displayMode", "Main"s},
      {"displayMode", ""s},
      {"displayMode", true},
      {"themeMode", "main"s},
      {"selectedDisplayID", "11"s},  // disabled while another mode is chosen
      {"glassOpacity", 0.4499},
      {"glassOpacity", 0.9501},
      {"glassOpacity", std::nan("")},
      {"glassOpacity", infinity},
      {"glassOpacity", "0.5"s},
      {"primaryColorHex", "#FF0000"s},
      {"primaryColorHex", "reddish"s},
      {"primaryColorHex", Color::srgb(1.1, 0, 0)},
      {"primaryColorHex", Color::srgb(0, -0.1, 0)},
      {"primaryColorHex", Color::srgb(0, 0, std::nan(""))},
      {"primaryColorHex", Color::srgb(0, 0, 0, infinity)},
      {"ignoredWordsText", true},
      {"ignoredWordsText", "\xC3"s},
      {"ignoredWordsText", "\xED\xA0\x80"s},
      {"ignoredWordsText", std::string(64 * 1024 + 1, 'a')},
      {"selectedTab", "Sources"s},
      {"selectedTab", ""s},
      {"selectedTab", true},
      {"selectedCalendarIDs", true},
      {"selectedCalendarIDs/w", "true"s},
      {"selectedCalendarIDs/x", true},
      {"selectedReminderListIDs/w", true},
      {"selectedCalendarIDs.all", {}},  // disabled while nothing is selected
      {"selectedCalendarIDs.all", true}};
  const Form before = view().form();
  for (const auto& edit : foreign) {
    view().edit(edit);
    EXPECT_EQ(view().form(), before) << edit.key;
  }
  EXPECT_TRUE(defaults_.writes.empty());
}

TEST_F(SettingsViewEditsTest, HidingIconsCannotBeChangedInFocusMode) {
  settings()->focusMode = true;
  edit("hideDesktopIconsInFocus", false);
  EXPECT_TRUE(settings()->hideDesktopIconsInFocus.get());
}

TEST_F(SettingsViewEditsTest, ADisplayThatWasTakenAwayCannotBeChosen) {
  settings()->displayMode = DashboardDisplayMode::selected;
  server_.remove("left");
  edit("selectedDisplayID", "11"s);
  EXPECT_EQ(*settings()->selectedDisplayID, "");
}

}  // namespace
}  // namespace orvane
