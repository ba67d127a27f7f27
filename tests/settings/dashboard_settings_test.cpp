#include "settings/dashboard_settings.h"

#include <gtest/gtest.h>

#include "fakes/memory_app_service.h"
#include "fakes/memory_user_defaults.h"

namespace orvane {
namespace {

using Writes = std::vector<std::pair<std::string, DefaultsValue>>;
using Texts = std::vector<std::string>;

std::string key(const std::string& name) { return "DashboardSettings." + name; }

class DashboardSettingsTest : public testing::Test {
 protected:
  DashboardSettings& settings() {
    if (!settings_) settings_ = std::make_shared<DashboardSettings>(defaults_, service_);
    return *settings_;
  }
  void store(const std::string& name, DefaultsValue value) {
    defaults_.values[key(name)] = std::move(value);
  }
  TextSet wordsOf(const std::string& text) {
    settings().ignoredWordsText = text;
    return settings().smartNextIgnoredWords();
  }

  fakes::MemoryUserDefaults defaults_;
  fakes::MemoryAppService service_;
  std::shared_ptr<DashboardSettings> settings_;
};

TEST_F(DashboardSettingsTest, AFreshUserHasTheDefaults) {
  const auto& fresh = settings();
  EXPECT_EQ(*fresh.showOnAllSpaces, true);
  EXPECT_EQ(*fresh.displayMode, DashboardDisplayMode::main);
  EXPECT_EQ(*fresh.selectedDisplayID, "");
  EXPECT_EQ(*fresh.launchAtLogin, false);
  EXPECT_EQ(*fresh.selectedCalendarIDs, TextSet());
  EXPECT_EQ(*fresh.selectedReminderListIDs, TextSet());
  EXPECT_EQ(*fresh.countdownIncludesEvents, true);
  EXPECT_EQ(*fresh.countdownIncludesReminders, true);
  EXPECT_EQ(*fresh.countdownIncludesAllDayEvents, false);
  EXPECT_EQ(*fresh.ignoredWordsText, "lunch, birthday, holiday");
  EXPECT_EQ(*fresh.primaryColorHex, "#3D5CF2");
  EXPECT_EQ(*fresh.glassOpacity, 0.82);
  EXPECT_EQ(*fresh.themeMode, DashboardThemeMode::vividBlue);
  EXPECT_EQ(*fresh.urgencyTinting, true);
  EXPECT_EQ(*fresh.hideDesktopIconsInFocus, true);
  EXPECT_EQ(*fresh.focusMode, false);
}

TEST_F(DashboardSettingsTest, CreationWritesNothing) {
  settings();
  EXPECT_TRUE(defaults_.writes.empty());
  EXPECT_TRUE(service_.calls.empty());
}

TEST_F(DashboardSettingsTest, LaunchAtLoginOfAFreshUserReflectsTheRegistration) {
  service_.current = SMAppServiceStatus::enabled;
  EXPECT_EQ(*settings().launchAtLogin, true);
}

TEST_F(DashboardSettingsTest, LaunchAtLoginIsNeverReadFromItsKey) {
  store("launchAtLogin", true);
  service_.current = SMAppServiceStatus::requiresApproval;
  EXPECT_EQ(*settings().launchAtLogin, false);
}

TEST_F(DashboardSettingsTest, StoredValuesAreReadBack) {
  store("showOnAllSpaces", false);
  store("displayMode", std::string("selected"));
  store("selectedDisplayID", std::string("0:0:1512:982"));
  store("selectedCalendarIDs", Texts{"b", "a", "b"});
  store("selectedReminderListIDs", Texts{"r"});
  store("countdownIncludesEvents", false);
  store("countdownIncludesReminders", false);
  store("countdownIncludesAllDayEvents", true);
  store("ignoredWordsText", std::string("gym"));
  store("primaryColorHex", std::string("no colour"));
  store("glassOpacity", 0.25);
  store("themeMode", std::string("light"));
  store("urgencyTinting", false);
  store("hideDesktopIconsInFocus", false);
  store("focusMode", true);
  const auto& read = settings();
  EXPECT_EQ(*read.showOnAllSpaces, false);
  EXPECT_EQ(*read.displayMode, DashboardDisplayMode::selected);
  EXPECT_EQ(*read.selectedDisplayID, "0:0:1512:982");
  EXPECT_EQ(*read.selectedCalendarIDs, (TextSet{"a", "b"}));
  EXPECT_EQ(*read.selectedReminderListIDs, TextSet{"r"});
  EXPECT_EQ(*read.countdownIncludesEvents, false);
  EXPECT_EQ(*read.countdownIncludesReminders, false);
  EXPECT_EQ(*read.countdownIncludesAllDayEvents, true);
  EXPECT_EQ(*read.ignoredWordsText, "gym");
  EXPECT_EQ(*read.primaryColorHex, "no colour");
  EXPECT_EQ(*read.glassOpacity, 0.25);
  EXPECT_EQ(*read.themeMode, DashboardThemeMode::light);
  EXPECT_EQ(*read.urgencyTinting, false);
  EXPECT_EQ(*read.hideDesktopIconsInFocus, false);
  EXPECT_EQ(*read.focusMode, true);
}

TEST_F(DashboardSettingsTest, ValuesOfTheWrongTypeGiveTheDefaultsAndStayStored) {
  for (const char* name : {"showOnAllSpaces", "countdownIncludesEvents", "urgencyTinting"}) {
    store(name, std::string("false"));
  }
  store("countdownIncludesReminders", 0.0);
  store("countdownIncludesAllDayEvents", 1.0);
  store("displayMode", true);
  store("selectedDisplayID", 12.0);
  store("selectedCalendarIDs", std::string("a"));
  store("ignoredWordsText", Texts{"gym"});
  const auto& read = settings();
  EXPECT_TRUE(*read.showOnAllSpaces);
  EXPECT_TRUE(*read.countdownIncludesEvents);
  EXPECT_TRUE(*read.urgencyTinting);
  EXPECT_TRUE(*read.countdownIncludesReminders);
  EXPECT_FALSE(*read.countdownIncludesAllDayEvents);
  EXPECT_EQ(*read.displayMode, DashboardDisplayMode::main);
  EXPECT_EQ(*read.selectedDisplayID, "");
  EXPECT_EQ(*read.selectedCalendarIDs, TextSet());
  EXPECT_EQ(*read.ignoredWordsText, "lunch, birthday, holiday");
  EXPECT_TRUE(defaults_.writes.empty());
}

TEST_F(DashboardSettingsTest, AThemeInTheWrongCaseIsTheFirstTheme) {
  store("themeMode", std::string("Dark"));
  EXPECT_EQ(*settings().themeMode, DashboardThemeMode::vividBlue);
}

TEST_F(DashboardSettingsTest, EmptyModeTextsAreTheFirstCases) {
  store("themeMode", std::string());
  store("displayMode", std::string());
  EXPECT_EQ(*settings().themeMode, DashboardThemeMode::vividBlue);
  EXPECT_EQ(*settings().displayMode, DashboardDisplayMode::main);
}

TEST_F(DashboardSettingsTest, StoredEmptyTextsStayEmpty) {
  store("ignoredWordsText", std::string());
  store("primaryColorHex", std::string());
  EXPECT_EQ(*settings().ignoredWordsText, "");
  EXPECT_EQ(*settings().primaryColorHex, "");
}

TEST_F(DashboardSettingsTest, AGlassOpacityBeyondOneIsKept) {
  store("glassOpacity", 1.7);
  EXPECT_EQ(*settings().glassOpacity, 1.7);
}

TEST_F(DashboardSettingsTest, AGlassOpacityStoredAsTextGivesTheDefault) {
  store("glassOpacity", std::string("0.5"));
  EXPECT_EQ(*settings().glassOpacity, 0.82);
}

TEST_F(DashboardSettingsTest, EveryChangeIsWrittenUnderItsKey) {
  auto& s = settings();
  s.showOnAllSpaces = false;
  s.displayMode = DashboardDisplayMode::all;
  s.selectedDisplayID = "7";
  s.selectedCalendarIDs = TextSet{"c", "a"};
  s.selectedReminderListIDs = TextSet{"l"};
  s.countdownIncludesEvents = false;
  s.countdownIncludesReminders = false;
  s.countdownIncludesAllDayEvents = true;
  s.ignoredWordsText = "gym";
  s.primaryColorHex = "#112233";
  s.glassOpacity = -3.5;
  s.themeMode = DashboardThemeMode::dark;
  s.urgencyTinting = false;
  s.hideDesktopIconsInFocus = false;
  s.focusMode = true;
  const Writes expected = {{key("showOnAllSpaces"), false},
                           {key("displayMode"), std::string("all")},
                           {key("selectedDisplayID"), std::string("7")},
                           {key("selectedCalendarIDs"), Texts{"a", "c"}},
                           {key("selectedReminderListIDs"), Texts{"l"}},
                           {key("countdownIncludesEvents"), false},
                           {key("countdownIncludesReminders"), false},
                           {key("countdownIncludesAllDayEvents"), true},
                           {key("ignoredWordsText"), std::string("gym")},
                           {key("primaryColorHex"), std::string("#112233")},
                           {key("glassOpacity"), -3.5},
                           {key("themeMode"), std::string("dark")},
                           {key("urgencyTinting"), false},
                           {key("hideDesktopIconsInFocus"), false},
                           {key("focusMode"), true}};
  EXPECT_EQ(defaults_.writes, expected);
}

TEST_F(DashboardSettingsTest, AnEqualValueIsAnnouncedAndWritten) {
  int announced = 0;
  const auto watching = settings().objectWillChange().subscribe([&] { ++announced; });
  settings().focusMode = false;
  settings().focusMode = false;
  EXPECT_EQ(announced, 2);
  EXPECT_EQ(defaults_.writes.size(), 2u);
}

TEST_F(DashboardSettingsTest, AChangeIsAnnouncedBeforeItIsInPlaceAndWrittenAfter) {
  std::string seen;
  const auto watching = settings().objectWillChange().subscribe([&] {
    seen += *settings().ignoredWordsText + "/" + std::to_string(defaults_.writes.size());
  });
  settings().ignoredWordsText = "gym";
  EXPECT_EQ(seen, "lunch, birthday, holiday/0");
  EXPECT_EQ(defaults_.writes.size(), 1u);
}

TEST_F(DashboardSettingsTest, PreferencesSurviveARestart) {
  settings().themeMode = DashboardThemeMode::light;
  settings().selectedCalendarIDs = TextSet{"x", "y"};
  const DashboardSettings again(defaults_, service_);
  EXPECT_EQ(*again.themeMode, DashboardThemeMode::light);
  EXPECT_EQ(*again.selectedCalendarIDs, (TextSet{"x", "y"}));
}

TEST_F(DashboardSettingsTest, TogglingTwiceLeavesTheSetAsItWasWithTwoSavesAndTwoNotifications) {
  settings().selectedCalendarIDs = TextSet{"work"};
  defaults_.writes.clear();
  int announced = 0;
  const auto watching = settings().objectWillChange().subscribe([&] { ++announced; });
  settings().toggleCalendar("home");
  EXPECT_EQ(*settings().selectedCalendarIDs, (TextSet{"home", "work"}));
  settings().toggleCalendar("home");
  EXPECT_EQ(*settings().selectedCalendarIDs, TextSet{"work"});
  EXPECT_EQ(announced, 2);
  const Writes expected = {{key("selectedCalendarIDs"), Texts{"home", "work"}},
                           {key("selectedCalendarIDs"), Texts{"work"}}};
  EXPECT_EQ(defaults_.writes, expected);
}

TEST_F(DashboardSettingsTest, TogglingAReminderListLeavesTheCalendarsAlone) {
  settings().toggleReminderList("l");
  EXPECT_EQ(*settings().selectedReminderListIDs, TextSet{"l"});
  EXPECT_EQ(*settings().selectedCalendarIDs, TextSet());
  settings().toggleReminderList("l");
  EXPECT_EQ(*settings().selectedReminderListIDs, TextSet());
}

TEST_F(DashboardSettingsTest, LaunchAtLoginRegistersOnceAndUnregisters) {
  settings().launchAtLogin = true;
  settings().launchAtLogin = true;
  EXPECT_EQ(service_.calls, Texts{"register"});
  settings().launchAtLogin = false;
  EXPECT_EQ(service_.calls, (Texts{"register", "unregister"}));
  const Writes expected = {
      {key("launchAtLogin"), true}, {key("launchAtLogin"), true}, {key("launchAtLogin"), false}};
  EXPECT_EQ(defaults_.writes, expected);
}

TEST_F(DashboardSettingsTest, ARefusedRegistrationSpringsBack) {
  service_.refuses = true;
  std::vector<bool> told;
  const auto watching =
      settings().launchAtLogin.subscribe([&](bool value) { told.push_back(value); });
  settings().launchAtLogin = true;
  EXPECT_FALSE(*settings().launchAtLogin);
  EXPECT_EQ(told, (std::vector<bool>{false, true, false}));
  EXPECT_EQ(service_.calls, Texts{"register"});
  const Writes expected = {{key("launchAtLogin"), true}, {key("launchAtLogin"), false}};
  EXPECT_EQ(defaults_.writes, expected);
}

TEST_F(DashboardSettingsTest, ARefusedUnregistrationSpringsBack) {
  service_.current = SMAppServiceStatus::enabled;
  service_.refuses = true;
  settings().launchAtLogin = false;
  EXPECT_TRUE(*settings().launchAtLogin);
  EXPECT_EQ(service_.calls, Texts{"unregister"});
}

TEST_F(DashboardSettingsTest, TheDefaultTextYieldsThreeWords) {
  EXPECT_EQ(settings().smartNextIgnoredWords(), (TextSet{"lunch", "birthday", "holiday"}));
}

TEST_F(DashboardSettingsTest, IgnoredWordsAreTrimmedAndEmptyOnesLeftOut) {
  EXPECT_EQ(wordsOf(" , ,Lunch ,lunch,\tbirthday\n"), (TextSet{"Lunch", "lunch", "birthday"}));
  EXPECT_EQ(wordsOf(""), TextSet());
  EXPECT_EQ(wordsOf(",,,"), TextSet());
  EXPECT_EQ(wordsOf("a,,b,"), (TextSet{"a", "b"}));
  EXPECT_EQ(wordsOf("\u3000team lunch\u00A0"), TextSet{"team lunch"});
}

TEST_F(DashboardSettingsTest, SemicolonsDoNotSeparateIgnoredWords) {
  EXPECT_EQ(wordsOf("lunch; birthday"), TextSet{"lunch; birthday"});
}

TEST_F(DashboardSettingsTest, SecondaryTextIsDimWhiteOrDimInk) {
  EXPECT_EQ(settings().secondaryTextColor(), Color::white().opacity(0.68));
  settings().themeMode = DashboardThemeMode::dark;
  EXPECT_EQ(settings().secondaryTextColor(), Color::white().opacity(0.68));
  settings().themeMode = DashboardThemeMode::light;
  EXPECT_EQ(settings().secondaryTextColor(), Color::srgb(0.08, 0.1, 0.16, 0.64));
}

}  // namespace
}  // namespace orvane
