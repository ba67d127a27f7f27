#include "linux/x11/display_scale.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace orvane::host::x11 {

namespace {

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::optional<double> dpiOf(std::string_view line) {
  const auto colon = line.find(':');
  if (colon == std::string_view::npos || trimmed(line.substr(0, colon)) != "Xft.dpi") return {};
  const auto value = trimmed(line.substr(colon + 1));
  double dpi = 0;
  const auto result = std::from_chars(value.data(), value.data() + value.size(), dpi);
  // Not-a-number compares false.
  if (result.ec != std::errc() || !(dpi > 0)) return {};
  return dpi;
}

}  // namespace

double displayScale(std::string_view resources) {
  double scale = 1;
  while (!resources.empty()) {
    const auto end = std::min(resources.find('\n'), resources.size());
    if (const auto dpi = dpiOf(resources.substr(0, end))) scale = std::clamp(*dpi / 96, 0.5, 4.0);
    resources.remove_prefix(std::min(end + 1, resources.size()));
  }
  return scale;
}

}  // namespace orvane::host::x11
