#pragma once

#include "dashboard/appearance.h"
#include "settings/color_hex.h"

namespace orvane {

// The look that fresh settings have, in the given theme.
inline DashboardAppearance themed(DashboardThemeMode theme) {
  DashboardAppearance settings;
  settings.themeMode = theme;
  settings.primary = *colorFromHex("#3D5CF2");
  settings.secondaryTextColor = theme == DashboardThemeMode::light
                                    ? Color::srgb(0.08, 0.10, 0.16, 0.64)
                                    : Color::white().opacity(0.68);
  settings.glassOpacity = 0.82;
  return settings;
}

}  // namespace orvane
