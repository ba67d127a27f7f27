#include "dashboard/appearance.h"

#include "settings/color_hex.h"

namespace orvane {
namespace {

// In place of a primary colour that is not one.
constexpr Color fallbackPrimary = Color::srgb(0.24, 0.36, 0.95);

// On the light glass each has a contrast of nearly three to one or more.
Color onLightGlass(SystemColor name) {
  switch (name) {
    case SystemColor::red:
      return Color::srgb(0.80, 0.12, 0.11);
    case SystemColor::orange:
      return Color::srgb(0.74, 0.33, 0);
    case SystemColor::yellow:
      return Color::srgb(0.55, 0.43, 0);
    case SystemColor::cyan:
      return Color::srgb(0, 0.47, 0.66);
    case SystemColor::white:
      return Color::white();
    case SystemColor::black:
      return Color::black();
  }
  return Color::clear();
}

}  // namespace

Color DashboardAppearance::shown(const Color& color) const {
  if (!isLight() || !color.isSystem()) return color;
  return onLightGlass(color.systemName()).opacity(color.opacity());
}

DashboardAppearance appearanceOf(const DashboardSettings& settings) {
  return {settings.themeMode.get(),
          colorFromHex(settings.primaryColorHex.get()).value_or(fallbackPrimary),
          settings.secondaryTextColor(), settings.glassOpacity.get(),
          settings.urgencyTinting.get()};
}

}  // namespace orvane
