#include "linux/paint/font_families.h"

namespace orvane::host {

namespace {

// Rounded families that have bold faces of their own, the closest to a font for user interfaces
// first. Those that are not installed are passed over when a font is looked up; asking for what is
// installed would read through all fonts at start.
constexpr const char* roundedFamilies = "Nunito,M PLUS Rounded 1c,Quicksand,";

}  // namespace

std::string standardFamily(const FontOptions& options) {
  return options.family.empty() ? "system-ui,sans-serif" : options.family;
}

std::string roundedFamily(const FontOptions& options) {
  if (!options.roundedFamily.empty()) return options.roundedFamily;
  if (!options.family.empty()) return options.family;
  return roundedFamilies + standardFamily(options);
}

}  // namespace orvane::host
