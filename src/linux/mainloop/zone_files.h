#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "foundation/main_actor.h"

namespace orvane::host {

// The names that have to be watched to see the system's zone change: the file itself and every
// symbolic link on the way to its content, each in its own folder. A chain of links that never ends
// is cut off.
[[nodiscard]] std::vector<std::filesystem::path> linkChain(const std::filesystem::path& file);

// Calls `changed` when the content that `file` stands for may have changed: the file or a link on
// the way to it was written, replaced, removed or created. Several changes at once are one call.
// Where the kernel gives no watches, looks once a minute instead. Main thread only.
class ZoneFiles {
 public:
  virtual ~ZoneFiles() = default;
};
[[nodiscard]] std::unique_ptr<ZoneFiles> makeZoneFiles(MainActor& actor, std::filesystem::path file,
                                                       std::function<void()> changed);

}  // namespace orvane::host
