#pragma once

#include <string>

#include "linux/locale/region.h"

namespace orvane::host {

// What the system's own file of that zone says. Empty where there is no such file, and for names
// that would lead out of the database's folder.
[[nodiscard]] OffsetAt offsetByZoneFile(const std::string& zone);

}  // namespace orvane::host
