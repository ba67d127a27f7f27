#pragma once

#include <optional>
#include <string>
#include <string_view>

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

}  // namespace orvane::ical
