#pragma once

#include <gio/gio.h>

#include "linux/desktopicons/icon_backend.h"
#include "linux/gio/handles.h"

namespace orvane::host::desktopicons {

// What came of a call that was to change something: one that was not answered in time, or whose
// callee went away over it, may have been carried out all the same.
[[nodiscard]] Outcome outcomeOf(GVariant* results, const gio::Failure& failure);

}  // namespace orvane::host::desktopicons
