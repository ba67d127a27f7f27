#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

// The board's colour theme.
enum class DashboardThemeMode : std::uint8_t { vividBlue, dark, light };

inline constexpr std::array allDashboardThemeModes = {
    DashboardThemeMode::vividBlue, DashboardThemeMode::dark, DashboardThemeMode::light};

// The text that is stored, which is also the case's identity.
[[nodiscard]] constexpr std::string_view rawValue(DashboardThemeMode mode) {
  switch (mode) {
    case DashboardThemeMode::vividBlue:
      return "vividBlue";
    case DashboardThemeMode::dark:
      return "dark";
    case DashboardThemeMode::light:
      return "light";
  }
  return {};
}

// Exact comparison; nothing for any other text.
[[nodiscard]] constexpr std::optional<DashboardThemeMode> themeModeFromRawValue(
    std::string_view text) {
  for (const auto mode : allDashboardThemeModes) {
    if (rawValue(mode) == text) return mode;
  }
  return std::nullopt;
}

}  // namespace orvane
