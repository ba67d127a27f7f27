#include "settings/dashboard_settings.h"

#include <string_view>

#include "foundation/trimmed.h"
#include "settings/stored_value.h"

namespace orvane {
namespace {

std::string keyOf(const char* property) { return std::string("DashboardSettings.") + property; }

TextSet toggled(TextSet set, const std::string& id) {
  if (set.erase(id) == 0) set.insert(id);
  return set;
}

}  // namespace

// A property that is read from its key, or else is `fallback`, and is written there when it
// changes.
template <class T>
Published<T> DashboardSettings::stored(const char* name, T fallback) {
  const std::string key = keyOf(name);
  const auto object = defaults_.object(key);
  const auto value = object ? StoredValue<T>::decode(*object) : std::nullopt;
  return Published<T>(*this, value.value_or(std::move(fallback)), [this, key](const T& changed) {
    defaults_.set(key, StoredValue<T>::encode(changed));
  });
}

DashboardSettings::DashboardSettings(UserDefaults& defaults, SMAppService& appService)
    : defaults_(defaults),
      appService_(appService),
      showOnAllSpaces(stored("showOnAllSpaces", true)),
      displayMode(stored("displayMode", DashboardDisplayMode::main)),
      selectedDisplayID(stored("selectedDisplayID", std::string())),
      launchAtLogin(*this, isRegisteredAtLogin(), [this](bool) { saveLaunchAtLogin(); }),
      selectedCalendarIDs(stored("selectedCalendarIDs", TextSet())),
      selectedReminderListIDs(stored("selectedReminderListIDs", TextSet())),
      countdownIncludesEvents(stored("countdownIncludesEvents", true)),
      countdownIncludesReminders(stored("countdownIncludesReminders", true)),
      countdownIncludesAllDayEvents(stored("countdownIncludesAllDayEvents", false)),
      ignoredWordsText(stored("ignoredWordsText", std::string("lunch, birthday, holiday"))),
      primaryColorHex(stored("primaryColorHex", std::string("#3D5CF2"))),
      glassOpacity(stored("glassOpacity", 0.82)),
      themeMode(stored("themeMode", DashboardThemeMode::vividBlue)),
      urgencyTinting(stored("urgencyTinting", true)),
      hideDesktopIconsInFocus(stored("hideDesktopIconsInFocus", true)),
      focusMode(stored("focusMode", false)) {}

void DashboardSettings::toggleCalendar(const std::string& id) {
  selectedCalendarIDs = toggled(selectedCalendarIDs, id);
}

void DashboardSettings::toggleReminderList(const std::string& id) {
  selectedReminderListIDs = toggled(selectedReminderListIDs, id);
}

TextSet DashboardSettings::smartNextIgnoredWords() const {
  TextSet words;
  std::string_view rest = *ignoredWordsText;
  while (!rest.empty()) {
    const auto comma = rest.find(',');
    const auto word = trimmed(rest.substr(0, comma));
    if (!word.empty()) words.emplace(word);
    rest.remove_prefix(comma == std::string_view::npos ? rest.size() : comma + 1);
  }
  return words;
}

Color DashboardSettings::secondaryTextColor() const {
  if (*themeMode == DashboardThemeMode::light) return Color::srgb(0.08, 0.1, 0.16, 0.64);
  return Color::white().opacity(0.68);
}

bool DashboardSettings::isRegisteredAtLogin() const {
  return appService_.status() == SMAppServiceStatus::enabled;
}

void DashboardSettings::saveLaunchAtLogin() {
  defaults_.set(keyOf("launchAtLogin"), *launchAtLogin);
  if (*launchAtLogin == isRegisteredAtLogin()) return;
  const bool done =
      *launchAtLogin ? appService_.registerService() : appService_.unregisterService();
  // Saves once more, now in agreement with the registration.
  if (!done) launchAtLogin = isRegisteredAtLogin();
}

}  // namespace orvane
