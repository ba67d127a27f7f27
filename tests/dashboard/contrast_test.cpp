#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "dashboard/formatting.h"
#include "dashboard/glass_panel.h"
#include "dashboard/visual_effect_view.h"
#include "fakes/cell_measurer.h"
#include "fakes/plain_locale.h"
#include "themes.h"
#include "view/layout.h"

namespace orvane {
namespace {

const Date now{1'795'167'660};

const Color pictures[] = {Color::white(), Color::srgb(0.5, 0.5, 0.5), Color::black()};

SRGB over(const SRGB& below, const Color& color, double factor = 1) {
  const SRGB c = color.resolved();
  const double part = c.opacity * factor;
  const auto mix = [part](double under, double above) { return under + (above - under) * part; };
  return {mix(below.red, c.red), mix(below.green, c.green), mix(below.blue, c.blue), 1};
}

double linear(double component) {
  return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double luminance(const SRGB& color) {
  return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

// As the Web Content Accessibility Guidelines define it, from 1 to 21.
double contrast(const SRGB& below, const Color& text) {
  const auto [dark, light] = std::minmax({luminance(below), luminance(over(below, text))});
  return (light + 0.05) / (dark + 0.05);
}

class ContrastTest : public testing::TestWithParam<DashboardThemeMode> {
 protected:
  const DashboardAppearance appearance = themed(GetParam());

  // The glass over a plain picture, where its gradient has that stop.
  [[nodiscard]] SRGB glassOver(const Color& picture, std::size_t stop) const {
    const fakes::PlainLocale locale;
    const auto list =
        layout(VisualEffectView{}.body({appearance, locale}), {10, 10}, fakes::CellMeasurer()).list;
    const auto tint = std::get<Material>(std::get<FillItem>(list.at(0).content).fill).tint;
    const SRGB glass =
        over(over(picture.resolved(), tint), GlassPanel::panelGradient(appearance).stops.at(stop));
    return over(picture.resolved(), Color::srgb(glass.red, glass.green, glass.blue),
                appearance.glassOpacity);
  }
  [[nodiscard]] SRGB pillOver(const Color& picture, std::size_t stop) const {
    return over(glassOver(picture, stop), appearance.neutral().opacity(0.12));
  }
  // Of the countdown to that many seconds from now.
  [[nodiscard]] Color urgency(double seconds) const {
    return appearance.shown(countdownColor(now + seconds, now, appearance));
  }
  // The picture that goes with the theme.
  [[nodiscard]] Color ownPicture() const {
    return appearance.isLight() ? Color::white() : Color::black();
  }
};

// Of the gradient, whose first stop is the brightest on dark glass: the middle and the far end.
constexpr std::size_t awayFromTheFirst[] = {1, 2};
constexpr double urgencies[] = {-1, 60, 3600};  // due, soon, within two hours

TEST_P(ContrastTest, TextsCanBeReadOnEveryPicture) {
  for (const Color& picture : pictures) {
    EXPECT_GT(contrast(glassOver(picture, 0), appearance.neutral()), 2.7);
    for (const std::size_t stop : awayFromTheFirst) {
      const SRGB glass = glassOver(picture, stop);
      EXPECT_GT(contrast(glass, appearance.neutral()), 7) << stop;
      EXPECT_GT(contrast(glass, appearance.secondaryTextColor), 3.8) << stop;
    }
  }
}

TEST_P(ContrastTest, SmallTextsAreClearOnAPictureThatGoesWithTheTheme) {
  EXPECT_GT(contrast(glassOver(ownPicture(), 0), appearance.secondaryTextColor), 3.3);
  for (const std::size_t stop : awayFromTheFirst) {
    EXPECT_GT(contrast(glassOver(ownPicture(), stop), appearance.secondaryTextColor), 4.5);
  }
}

TEST_P(ContrastTest, UrgencyCanBeReadInPills) {
  for (const double seconds : urgencies) {
    for (const std::size_t stop : awayFromTheFirst) {
      EXPECT_GT(contrast(pillOver(ownPicture(), stop), urgency(seconds)), 3) << seconds;
      for (const Color& picture : pictures) {
        EXPECT_GT(contrast(pillOver(picture, stop), urgency(seconds)), 1.7) << seconds;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(InEveryTheme, ContrastTest, testing::ValuesIn(allDashboardThemeModes));

}  // namespace
}  // namespace orvane
