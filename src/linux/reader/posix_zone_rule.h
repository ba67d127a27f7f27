#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "linux/reader/zone.h"

namespace orvane::ical {

// The changes of the years `firstYear`…`lastYear` by the rule at the end of a compiled time zone
// ("CET-1CEST,M3.5.0,M10.5.0/3"; POSIX TZ with the extensions of RFC 8536 section 3.3.1). A rule
// without daylight saving yields one change, at the start of the first year. Nothing when the text
// is no such rule.
std::optional<std::vector<Zone::Change>> changesByPosixRule(std::string_view rule, int firstYear,
                                                            int lastYear);

}  // namespace orvane::ical
