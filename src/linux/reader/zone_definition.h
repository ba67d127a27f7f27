#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "linux/reader/zone.h"

namespace orvane::ical {

// A time zone that a file brings along (VTIMEZONE).
struct ZoneDefinition {
  std::string tzid;
  std::string location;      // X-LIC-LOCATION, an IANA name; often empty
  std::optional<Zone> zone;  // absent when the definition says nothing that can be used
};

// `text` is one component from its BEGIN to its END line. The table reaches up to the start of
// `horizonYear`; a definition that asks for more work than any real one needs is cut short.
ZoneDefinition readZoneDefinition(std::string_view text, int horizonYear);

// Its TZID alone.
std::string tzidOf(std::string_view text);

}  // namespace orvane::ical
