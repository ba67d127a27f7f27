#pragma once

#include <unicode/timezone.h>

#include <memory>
#include <string>

#include "linux/locale/region.h"

namespace orvane::host {

// A zone of that name which has, from 1970 until 2037, the offsets that `offset` tells, and keeps
// the first and the last of them before and afterwards. An offset that lasts for less than three
// days may be missed.
[[nodiscard]] std::unique_ptr<icu::TimeZone> ruledZone(const std::string& name,
                                                       const OffsetAt& offset);

}  // namespace orvane::host
