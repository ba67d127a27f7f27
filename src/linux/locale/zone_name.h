#pragma once

#include <optional>
#include <string>

#include "linux/locale/region.h"

namespace orvane::host {

// The IANA name of the system's zone as far as names tell: from TZ where it is set, else from the
// links behind localtime, else the name of a file in the zone tree that has the same content, the
// one in timezoneName first. Nothing where TZ is a rule, or nothing in the tree is alike.
[[nodiscard]] std::optional<std::string> systemZoneName(const SystemPlaces& places);

}  // namespace orvane::host
