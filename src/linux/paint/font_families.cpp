#include "linux/paint/font_families.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <array>
#include <memory>

namespace orvane::host {

namespace {

using PatternHandle = std::unique_ptr<FcPattern, void (*)(FcPattern*)>;
using FontSetHandle = std::unique_ptr<FcFontSet, void (*)(FcFontSet*)>;
using ObjectSetHandle = std::unique_ptr<FcObjectSet, void (*)(FcObjectSet*)>;

// Rounded families that also have a bold face, the closest to a user-interface font first.
constexpr std::array roundedFamilies{"Nunito", "M PLUS Rounded 1c", "Quicksand"};

// A range of weights means a variable font.
bool isBold(FcPattern* face) {
  int weight = 0;
  if (FcPatternGetInteger(face, FC_WEIGHT, 0, &weight) == FcResultMatch)
    return weight >= FC_WEIGHT_DEMIBOLD;
  FcRange* range = nullptr;
  double least = 0;
  double most = 0;
  return FcPatternGetRange(face, FC_WEIGHT, 0, &range) == FcResultMatch &&
         FcRangeGetDouble(range, &least, &most) && most >= FC_WEIGHT_DEMIBOLD;
}

bool isInstalledInBold(const char* family) {
  const PatternHandle pattern(FcPatternCreate(), FcPatternDestroy);
  FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
  const ObjectSetHandle objects(FcObjectSetBuild(FC_WEIGHT, nullptr), FcObjectSetDestroy);
  const FontSetHandle faces(FcFontList(nullptr, pattern.get(), objects.get()), FcFontSetDestroy);
  return faces && std::any_of(faces->fonts, faces->fonts + faces->nfont, isBold);
}

}  // namespace

std::string standardFamily(const FontOptions& options) {
  return options.family.empty() ? "system-ui,sans-serif" : options.family;
}

std::string roundedFamily(const FontOptions& options) {
  if (!options.roundedFamily.empty()) return options.roundedFamily;
  if (!options.family.empty()) return options.family;
  const auto* found = std::ranges::find_if(roundedFamilies, isInstalledInBold);
  const std::string standard = standardFamily(options);
  return found == roundedFamilies.end() ? standard : *found + ("," + standard);
}

}  // namespace orvane::host
