// dashboard/ is the board itself: cards as plain values that become views, the texts and colours
// of countdowns, and the root view that lays them out in a window.
#pragma once

#include "foundation/color.h"
#include "settings/dashboard_settings.h"
#include "settings/theme_mode.h"

namespace orvane {

// The neutral text colour of the light theme.
inline constexpr Color lightThemeTextColor = Color::srgb(0.08, 0.10, 0.16);

// What of the settings the cards look like: a copy, taken once for each body.
struct DashboardAppearance {
  DashboardThemeMode themeMode = DashboardThemeMode::vividBlue;
  Color primary;
  Color secondaryTextColor;
  double glassOpacity = 0;
  bool urgencyTinting = true;

  [[nodiscard]] bool isLight() const { return themeMode == DashboardThemeMode::light; }
  // White, or dark on the light theme: the colour of texts, and of tints at a low opacity.
  [[nodiscard]] Color neutral() const { return isLight() ? lightThemeTextColor : Color::white(); }
  // A colour as it is drawn: system colours, which are made for dark glass, are darkened on the
  // light theme until they can be read there.
  [[nodiscard]] Color shown(const Color& color) const;

  friend bool operator==(const DashboardAppearance&, const DashboardAppearance&) = default;
};

[[nodiscard]] DashboardAppearance appearanceOf(const DashboardSettings& settings);

}  // namespace orvane
