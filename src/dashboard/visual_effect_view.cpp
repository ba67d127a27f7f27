#include "dashboard/visual_effect_view.h"

namespace orvane {
namespace {

Color hudTint(DashboardThemeMode theme) {
  switch (theme) {
    case DashboardThemeMode::vividBlue:
      return Color::srgb(0.01, 0.03, 0.22, 0.96);
    case DashboardThemeMode::dark:
      return Color::srgb(0.04, 0.04, 0.06, 0.96);
    case DashboardThemeMode::light:
      return Color::srgb(0.98, 0.985, 1.0, 0.96);
  }
  return Color::clear();
}

}  // namespace

View VisualEffectView::body(const CardEnvironment& environment) const {
  if (state == NSVisualEffectState::inactive) return View();
  return filled(Shape::rectangle(), Material{hudTint(environment.appearance.themeMode)});
}

}  // namespace orvane
