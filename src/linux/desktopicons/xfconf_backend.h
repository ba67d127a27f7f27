#pragma once

#include <gio/gio.h>

#include <memory>

#include "linux/desktopicons/icon_backend.h"

namespace orvane::host::desktopicons {

// Xfce keeps the style of its desktop's icons in a property of xfconf: 0 is none, what holds where
// it is not set is a choice of the distribution. The property is asked for and set over the bus,
// and takes effect at once.
[[nodiscard]] std::unique_ptr<IconBackend> makeXfconfBackend(GDBusConnection* connection);

}  // namespace orvane::host::desktopicons
