#include "linux/settingswindow/gtk/accent.h"

#include <algorithm>
#include <cmath>

namespace orvane::window {
namespace {

// Parts of a control have to differ from what is beside them by 3 (WCAG 2.1, 1.4.11); a little more
// does them good. Bold texts on the accent are readable somewhat below that.
constexpr double kVisible = 3.3;
constexpr double kReadable = 2.4;
constexpr double kStep = 0.02;
constexpr SRGB kWhite{1, 1, 1, 1};
constexpr SRGB kBlack{0, 0, 0, 1};

double linear(double part) {
  return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double luminance(const SRGB& color) {
  return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

struct HSL {
  double hue = 0;  // in sixths of the circle
  double saturation = 0;
  double lightness = 0;
};

double hueOf(const SRGB& color, double highest, double range) {
  if (highest == color.red) return (color.green - color.blue) / range + 6;
  if (highest == color.green) return (color.blue - color.red) / range + 2;
  return (color.red - color.green) / range + 4;
}

HSL hslOf(const SRGB& color) {
  const double highest = std::max({color.red, color.green, color.blue});
  const double range = highest - std::min({color.red, color.green, color.blue});
  const double lightness = highest - range / 2;
  if (range <= 0 || lightness <= 0 || lightness >= 1) return {0, 0, lightness};
  return {hueOf(color, highest, range), range / (1 - std::abs(2 * lightness - 1)), lightness};
}

SRGB srgbOf(const HSL& color) {
  const double reach = color.saturation * std::min(color.lightness, 1 - color.lightness);
  const auto part = [&](double turn) {
    const double k = std::fmod(turn + color.hue * 2, 12.0);
    return color.lightness - reach * std::clamp(std::min(k - 3, 9 - k), -1.0, 1.0);
  };
  return {part(0), part(8), part(4), 1};
}

}  // namespace

double contrast(const SRGB& a, const SRGB& b) {
  const double first = luminance(a) + 0.05;
  const double second = luminance(b) + 0.05;
  return std::max(first, second) / std::min(first, second);
}

SRGB visibleOn(const SRGB& color, const SRGB& background) {
  if (contrast(color, background) >= kVisible) return color;
  HSL hsl = hslOf(color);
  const bool isDark = contrast(background, kWhite) > contrast(background, kBlack);
  const double end = isDark ? 1 : 0;
  while (contrast(srgbOf(hsl), background) < kVisible && hsl.lightness != end) {
    hsl.lightness = std::clamp(hsl.lightness + (isDark ? kStep : -kStep), 0.0, 1.0);
  }
  return srgbOf(hsl);
}

SRGB textOn(const SRGB& color) { return contrast(kWhite, color) >= kReadable ? kWhite : kBlack; }

}  // namespace orvane::window
