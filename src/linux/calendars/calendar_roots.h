#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orvane::host {

// The value of an environment variable, nothing when it is not set.
using Environment = std::function<std::optional<std::string>(const std::string& name)>;

// Where calendars are looked for, the program's own place first, then those of the usual
// calendar-sync tools. A base directory that is not absolute does not count (XDG Base Directory
// Specification, "Environment variables"); without a home only $XDG_DATA_HOME is left.
std::vector<std::string> calendarRoots(const Environment& environment);

}  // namespace orvane::host
