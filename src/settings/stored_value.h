#pragma once

#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "platform/user_defaults.h"
#include "settings/display_mode.h"
#include "settings/theme_mode.h"

namespace orvane {

// How a preference of type T is written in the user defaults, and read back from there: decode()
// gives nothing for a value of another type or a text that names no case.
template <class T>
struct StoredValue {
  static DefaultsValue encode(const T& value) { return value; }
  static std::optional<T> decode(const DefaultsValue& stored) {
    const T* value = std::get_if<T>(&stored);
    return value ? std::optional<T>(*value) : std::nullopt;
  }
};

template <>
struct StoredValue<std::set<std::string>> {
  static DefaultsValue encode(const std::set<std::string>& value) {
    return std::vector<std::string>(value.begin(), value.end());
  }
  static std::optional<std::set<std::string>> decode(const DefaultsValue& stored) {
    const auto* list = std::get_if<std::vector<std::string>>(&stored);
    if (!list) return std::nullopt;
    return std::set<std::string>(list->begin(), list->end());
  }
};

// An enumeration, by its raw text.
template <class Mode, std::optional<Mode> (*fromRawValue)(std::string_view)>
struct StoredMode {
  static DefaultsValue encode(Mode mode) { return std::string(rawValue(mode)); }
  static std::optional<Mode> decode(const DefaultsValue& stored) {
    const auto* text = std::get_if<std::string>(&stored);
    return text ? fromRawValue(*text) : std::nullopt;
  }
};

template <>
struct StoredValue<DashboardDisplayMode>
    : StoredMode<DashboardDisplayMode, displayModeFromRawValue> {};
template <>
struct StoredValue<DashboardThemeMode> : StoredMode<DashboardThemeMode, themeModeFromRawValue> {};

}  // namespace orvane
