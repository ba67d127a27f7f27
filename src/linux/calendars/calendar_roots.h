#pragma once

#include <string>
#include <vector>

#include "linux/files/base_directory.h"

namespace orvane::host {

// Where calendars are looked for, the program's own place first, then those of the usual
// calendar-sync tools. A base directory that is not absolute does not count (XDG Base Directory
// Specification, "Environment variables"); without a home only $XDG_DATA_HOME is left.
std::vector<std::string> calendarRoots(const Environment& environment);

}  // namespace orvane::host
