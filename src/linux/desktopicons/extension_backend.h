#pragma once

#include <memory>

#include "linux/desktopicons/icon_backend.h"

namespace orvane::host::desktopicons {

// GNOME's icons are drawn by a shell extension; which ones there are is known by name. Hiding adds
// them to the list of disabled extensions, which wins over every list that enables one, and giving
// back takes away only what was added. Null where GNOME Shell is not installed.
[[nodiscard]] std::unique_ptr<IconBackend> makeExtensionBackend();

}  // namespace orvane::host::desktopicons
