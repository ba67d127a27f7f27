#pragma once

#include <string>

#include "linux/wire/reader_messages.h"

namespace orvane::ical {

// An answer as text, one line per occurrence and task, to be compared with what stands beside a
// fixture. Instants are in UTC.
std::string listing(const wire::FileAnswer& answer);

// "2026-11-20T08:41:00Z" in seconds since 1970.
double instant(const std::string& text);

// The whole of a file under tests/data.
std::string readData(const std::string& name);

}  // namespace orvane::ical
