#include "dashboard/appearance.h"

#include "settings/color_hex.h"

namespace orvane {
namespace {

// In place of a primary colour that is not one.
constexpr Color fallbackPrimary = Color::srgb(0.24, 0.36, 0.95);

}  // namespace

DashboardAppearance appearanceOf(const DashboardSettings& settings) {
  return {settings.themeMode.get(),
          colorFromHex(settings.primaryColorHex.get()).value_or(fallbackPrimary),
          settings.secondaryTextColor(), settings.glassOpacity.get(),
          settings.urgencyTinting.get()};
}

}  // namespace orvane
