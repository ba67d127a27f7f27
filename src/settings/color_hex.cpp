#include "settings/color_hex.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "foundation/trimmed.h"

namespace orvane {
namespace {

constexpr std::size_t digitsOfColor = 6;

// std::from_chars knows a leading minus but no plus, and would take the minus of "+-".
std::optional<std::int64_t> integerFromHex(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  std::int64_t value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value, 16);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

double component(std::int64_t value, int shift) {
  return static_cast<double>((value >> shift) & 0xFF) / 255.0;
}

std::optional<unsigned> step(double component) {
  const double rounded = std::round(component * 255);
  if (!(rounded >= 0 && rounded <= 0xFFFF)) return std::nullopt;
  return static_cast<unsigned>(rounded);
}

}  // namespace

std::optional<Color> colorFromHex(std::string_view text) {
  text = trimmed(text);
  if (text.starts_with('#')) text.remove_prefix(1);
  if (text.size() != digitsOfColor) return std::nullopt;
  const auto value = integerFromHex(text);
  if (!value) return std::nullopt;
  return Color::srgb(component(*value, 16), component(*value, 8), component(*value, 0));
}

std::optional<std::string> hexFromColor(const Color& color) {
  const SRGB srgb = color.resolved();
  const auto red = step(srgb.red);
  const auto green = step(srgb.green);
  const auto blue = step(srgb.blue);
  if (!red || !green || !blue) return std::nullopt;
  std::array<char, 16> text{};
  const int length = std::snprintf(text.data(), text.size(), "#%02X%02X%02X", *red, *green, *blue);
  return std::string(text.data(), static_cast<std::size_t>(length));
}

}  // namespace orvane
