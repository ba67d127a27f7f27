#pragma once

#include <gio/gio.h>

#include <memory>

#include "linux/desktopicons/icon_backend.h"

namespace orvane::host::desktopicons {

// KDE Plasma's icons are the files of a folder on each desktop; its shell is told over the bus, by
// scripts, to let none of them through. Where it refuses, since an administrator has forbidden
// scripts, one line says so.
[[nodiscard]] std::unique_ptr<IconBackend> makePlasmaBackend(GDBusConnection* connection);

}  // namespace orvane::host::desktopicons
