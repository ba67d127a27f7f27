#pragma once

#include <string>

#include "linux/paint/fonts.h"

namespace orvane::host {

// Family lists as pango takes them, separated by commas, the first one that is installed counting,
// for the two designs. Where the standard family is pinned, it serves for the rounded design too.
[[nodiscard]] std::string standardFamily(const FontOptions& options);
[[nodiscard]] std::string roundedFamily(const FontOptions& options);

}  // namespace orvane::host
