#pragma once

#include "calendar_folders.h"

namespace orvane::bench {

// Registers the benchmarks that read these folders, which must outlive their runs.
void registerReading(CalendarFolders& folders);

}  // namespace orvane::bench
