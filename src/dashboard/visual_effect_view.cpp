#include "dashboard/visual_effect_view.h"

namespace orvane {
namespace {

Color hudTint(DashboardThemeMode theme) {
  switch (theme) {
    case DashboardThemeMode::vividBlue:
      return Color::srgb(0.03, 0.06, 0.26, 0.90);
    case DashboardThemeMode::dark:
      return Color::srgb(0.05, 0.05, 0.07, 0.94);
    case DashboardThemeMode::light:
      return Color::srgb(0.96, 0.97, 1.0, 0.90);
  }
  return Color::clear();
}

}  // namespace

View VisualEffectView::body(const CardEnvironment& environment) const {
  if (state == NSVisualEffectState::inactive) return View();
  return filled(Shape::rectangle(), Material{hudTint(environment.appearance.themeMode)});
}

}  // namespace orvane
