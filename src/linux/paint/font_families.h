#pragma once

#include <string>

#include "linux/paint/fonts.h"

namespace orvane::host {

// Family lists as pango takes them, separated by commas, for the two designs. A rounded family
// that was not asked for is looked up among those installed, unless the standard one is pinned.
[[nodiscard]] std::string standardFamily(const FontOptions& options);
[[nodiscard]] std::string roundedFamily(const FontOptions& options);

}  // namespace orvane::host
