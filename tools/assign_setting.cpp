#include "assign_setting.h"

#include <charconv>
#include <cmath>
#include <functional>
#include <map>
#include <sstream>

namespace orvane::tools {
namespace {

// What a text stands for as a value of type T.
template <class T>
struct Reading;

template <>
struct Reading<bool> {
  static constexpr const char* wanted = "true or false";
  static std::optional<bool> from(const std::string& text) {
    if (text != "true" && text != "false") return std::nullopt;
    return text == "true";
  }
};

template <>
struct Reading<double> {
  static constexpr const char* wanted = "a number";
  static std::optional<double> from(const std::string& text) {
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = error == std::errc() && end == text.data() + text.size();
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
  }
};

template <>
struct Reading<std::string> {
  static constexpr const char* wanted = "a text";
  static std::optional<std::string> from(const std::string& text) { return text; }
};

template <>
struct Reading<TextSet> {
  static constexpr const char* wanted = "a list";
  static std::optional<TextSet> from(const std::string& text) {
    TextSet set;
    std::stringstream stream(text);
    for (std::string part; std::getline(stream, part, ',');) {
      if (!part.empty()) set.insert(part);
    }
    return set;
  }
};

template <>
struct Reading<DashboardDisplayMode> {
  static constexpr const char* wanted = "main, all or selected";
  static std::optional<DashboardDisplayMode> from(const std::string& text) {
    return displayModeFromRawValue(text);
  }
};

template <>
struct Reading<DashboardThemeMode> {
  static constexpr const char* wanted = "vividBlue, dark or light";
  static std::optional<DashboardThemeMode> from(const std::string& text) {
    return themeModeFromRawValue(text);
  }
};

using Assignment =
    std::function<std::optional<std::string>(DashboardSettings&, const std::string&)>;

template <class T>
Assignment assignment(Published<T> DashboardSettings::*property) {
  return [property](DashboardSettings& settings,
                    const std::string& text) -> std::optional<std::string> {
    auto value = Reading<T>::from(text);
    if (!value) return std::string("is not ") + Reading<T>::wanted;
    settings.*property = std::move(*value);
    return std::nullopt;
  };
}

std::map<std::string, Assignment> assignments() {
  using Settings = DashboardSettings;
  return {
      {"showOnAllSpaces", assignment(&Settings::showOnAllSpaces)},
      {"displayMode", assignment(&Settings::displayMode)},
      {"selectedDisplayID", assignment(&Settings::selectedDisplayID)},
      {"launchAtLogin", assignment(&Settings::launchAtLogin)},
      {"selectedCalendarIDs", assignment(&Settings::selectedCalendarIDs)},
      {"selectedReminderListIDs", assignment(&Settings::selectedReminderListIDs)},
      {"countdownIncludesEvents", assignment(&Settings::countdownIncludesEvents)},
      {"countdownIncludesReminders", assignment(&Settings::countdownIncludesReminders)},
      {"countdownIncludesAllDayEvents", assignment(&Settings::countdownIncludesAllDayEvents)},
      {"ignoredWordsText", assignment(&Settings::ignoredWordsText)},
      {"primaryColorHex", assignment(&Settings::primaryColorHex)},
      {"glassOpacity", assignment(&Settings::glassOpacity)},
      {"themeMode", assignment(&Settings::themeMode)},
      {"urgencyTinting", assignment(&Settings::urgencyTinting)},
      {"hideDesktopIconsInFocus", assignment(&Settings::hideDesktopIconsInFocus)},
      {"focusMode", assignment(&Settings::focusMode)},
  };
}

}  // namespace

std::optional<std::string> assign(DashboardSettings& settings, const SettingAssignment& wanted) {
  const auto known = assignments();
  const auto found = known.find(wanted.property);
  if (found == known.end()) return "there is no setting \"" + wanted.property + "\"";
  const auto problem = found->second(settings, wanted.value);
  if (!problem) return std::nullopt;
  return wanted.property + ": \"" + wanted.value + "\" " + *problem;
}

}  // namespace orvane::tools
