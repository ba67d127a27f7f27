#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "linux/desktopicons/icon_backend.h"

namespace orvane::host::desktopicons {

// Where GNOME Shell looks for its extensions: the user's folder, then those of the system.
[[nodiscard]] std::vector<std::filesystem::path> shellExtensionFolders();

// GNOME's icons are drawn by a shell extension; which ones there are is known by name. Hiding adds
// those that are installed in one of the folders to the list of disabled extensions, which wins
// over every list that enables one, and giving back takes away only what was added. Where none is
// installed nothing is hidden and nothing is written. Null where GNOME Shell is not installed.
[[nodiscard]] std::unique_ptr<IconBackend> makeExtensionBackend(
    std::vector<std::filesystem::path> extensionFolders);

}  // namespace orvane::host::desktopicons
