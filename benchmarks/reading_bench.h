#pragma once

#include <functional>

#include "calendar_folders.h"

namespace orvane::bench {

// Registers the benchmarks that read folders, which are asked for when the first of them is run and
// must outlive the last.
void registerReading(const std::function<CalendarFolders&()>& folders);

}  // namespace orvane::bench
