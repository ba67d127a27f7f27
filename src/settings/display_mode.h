// settings/ holds the user's preferences: one observable store, its enumerations and the texts in
// which colours are written. Nothing here acts on a preference; those who observe the store do.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

// Which screens show the board.
enum class DashboardDisplayMode : std::uint8_t { main, all, selected };

inline constexpr std::array allDashboardDisplayModes = {
    DashboardDisplayMode::main, DashboardDisplayMode::all, DashboardDisplayMode::selected};

// The text that is stored, which is also the case's identity.
[[nodiscard]] constexpr std::string_view rawValue(DashboardDisplayMode mode) {
  switch (mode) {
    case DashboardDisplayMode::main:
      return "main";
    case DashboardDisplayMode::all:
      return "all";
    case DashboardDisplayMode::selected:
      return "selected";
  }
  return {};
}

// Exact comparison; nothing for any other text.
[[nodiscard]] constexpr std::optional<DashboardDisplayMode> displayModeFromRawValue(
    std::string_view text) {
  for (const auto mode : allDashboardDisplayModes) {
    if (rawValue(mode) == text) return mode;
  }
  return std::nullopt;
}

}  // namespace orvane
