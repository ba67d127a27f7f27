#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "linux/reader/text_encoding.h"

namespace orvane::ical {

// A component with only those properties that we ask for, each on one line, decoded, and without
// the components within it (alarms). The library is given no more than this: attachments of
// megabytes and everything else a file may hold never reach it.
struct ItemText {
  std::string component;
  std::vector<std::string> rules;          // values of RRULE, which the library would shorten
  std::vector<std::string> excludedRules;  // of EXRULE
};

ItemText reducedItemText(std::string_view text, TextEncoding encoding);

}  // namespace orvane::ical
