#include "dashboard/glass_panel.h"

#include "dashboard/visual_effect_view.h"
#include "view/text_measurer.h"

namespace orvane {
namespace {

constexpr Shape panel = Shape::roundedRectangle(8, true);

View pane(const CardEnvironment& environment) {
  const auto gradient = GlassPanel::panelGradient(environment.appearance);
  return zstack(Alignment::center(),
                {VisualEffectView{}.body(environment), filled(Shape::rectangle(), gradient)})
      .opacity(environment.appearance.glassOpacity)
      .clipped(panel);
}

}  // namespace

LinearGradient GlassPanel::panelGradient(const DashboardAppearance& settings) {
  const Color primary = settings.primary;
  const Color white = Color::white();
  switch (settings.themeMode) {
    case DashboardThemeMode::vividBlue:
      return {{Color::srgb(0.68, 0.75, 1.0, 0.66), primary.opacity(0.32), white.opacity(0.10)}};
    case DashboardThemeMode::dark:
      return {{primary.opacity(0.28), Color::black().opacity(0.18), white.opacity(0.06)}};
    case DashboardThemeMode::light:
      return {{white.opacity(0.78), primary.opacity(0.13), white.opacity(0.52)}};
  }
  return {};
}

GlassPanel::Glass GlassPanel::glass(const CardEnvironment& environment) {
  const auto& settings = environment.appearance;
  const Color border = settings.neutral().opacity(settings.isLight() ? 0.12 : 0.18);
  return {pane(environment), stroked(panel, border, 1),
          Color::black().opacity(settings.isLight() ? 0.08 : 0.18)};
}

View GlassPanel::body(const CardEnvironment& environment) const { return body(glass(environment)); }

View GlassPanel::body(const Glass& glass) const {
  return content.padding(20)
      .frame({.maxWidth = unlimitedWidth, .alignment = Alignment::leading()})
      .background(glass.behind)
      .overlay(glass.border)
      .shadow(panel, glass.shadow, 22, {0, 12});
}

}  // namespace orvane
