#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "linux/reader/zone.h"

namespace orvane::ical {

// Zones of the system's own database, so that an update of it reaches us and an event stands where
// every other clock of the desktop puts it.

// Bytes of a compiled zone (TZif, RFC 8536) as a table that reaches to the year 2200; nothing when
// they are none.
std::optional<Zone> decodeCompiledZone(std::string_view bytes);

// By its IANA name, nothing when the database has none. Names that would lead out of the database's
// folder are not names.
std::optional<Zone> systemZone(const std::string& name);

// All names that systemZone() may know, and perhaps some that it does not; in order.
std::vector<std::string> systemZoneNames();

}  // namespace orvane::ical
