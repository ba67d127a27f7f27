#include "assign_setting.h"

#include <gmock/gmock.h>

#include "fakes/memory_app_service.h"
#include "fakes/memory_user_defaults.h"

namespace orvane::tools {
namespace {

using testing::HasSubstr;

class AssignSettingTest : public testing::Test {
 protected:
  void expectAssigned(const std::string& property, const std::string& value) {
    EXPECT_EQ(assign(settings, {property, value}), std::nullopt) << property;
  }
  fakes::MemoryUserDefaults defaults;
  fakes::MemoryAppService service;
  DashboardSettings settings{defaults, service};
};

TEST_F(AssignSettingTest, KnowsEveryProperty) {
  expectAssigned("showOnAllSpaces", "false");
  expectAssigned("displayMode", "selected");
  expectAssigned("selectedDisplayID", "12");
  expectAssigned("launchAtLogin", "true");
  expectAssigned("selectedCalendarIDs", "a,b");
  expectAssigned("selectedReminderListIDs", "");
  expectAssigned("countdownIncludesEvents", "false");
  expectAssigned("countdownIncludesReminders", "false");
  expectAssigned("countdownIncludesAllDayEvents", "true");
  expectAssigned("ignoredWordsText", "lunch, nap");
  expectAssigned("primaryColorHex", "#FF0000");
  expectAssigned("glassOpacity", "0.25");
  expectAssigned("themeMode", "light");
  expectAssigned("urgencyTinting", "false");
  expectAssigned("hideDesktopIconsInFocus", "false");
  expectAssigned("focusMode", "true");
  EXPECT_FALSE(*settings.showOnAllSpaces);
  EXPECT_EQ(*settings.displayMode, DashboardDisplayMode::selected);
  EXPECT_EQ(*settings.selectedDisplayID, "12");
  EXPECT_TRUE(*settings.launchAtLogin);
  EXPECT_EQ(*settings.selectedCalendarIDs, (TextSet{"a", "b"}));
  EXPECT_EQ(*settings.selectedReminderListIDs, TextSet{});
  EXPECT_FALSE(*settings.countdownIncludesEvents);
  EXPECT_FALSE(*settings.countdownIncludesReminders);
  EXPECT_TRUE(*settings.countdownIncludesAllDayEvents);
  EXPECT_EQ(*settings.ignoredWordsText, "lunch, nap");
  EXPECT_EQ(*settings.primaryColorHex, "#FF0000");
  EXPECT_EQ(*settings.glassOpacity, 0.25);
  EXPECT_EQ(*settings.themeMode, DashboardThemeMode::light);
  EXPECT_FALSE(*settings.urgencyTinting);
  EXPECT_FALSE(*settings.hideDesktopIconsInFocus);
  EXPECT_TRUE(*settings.focusMode);
}

TEST_F(AssignSettingTest, TellsWhatIsWrongAndChangesNothing) {
  const std::vector<SettingAssignment> wrong{{"colour", "red"},       {"focusMode", "yes"},
                                             {"focusMode", ""},       {"glassOpacity", "half"},
                                             {"glassOpacity", "nan"}, {"glassOpacity", "0.5x"},
                                             {"themeMode", "Dark"},   {"displayMode", "one"}};
  for (const auto& assignment : wrong) {
    const auto problem = assign(settings, assignment);
    ASSERT_TRUE(problem.has_value()) << assignment.property << "=" << assignment.value;
    EXPECT_THAT(*problem, HasSubstr("\"" +
                                    (assignment.property == "colour" ? assignment.property
                                                                     : assignment.value) +
                                    "\""));
  }
  EXPECT_TRUE(defaults.writes.empty());
}

}  // namespace
}  // namespace orvane::tools
