#pragma once

#include "linux/application/instance.h"

namespace orvane::host::application {

// The guard is a lock on a file in the program's own folder in the runtime folder, and a socket
// beside it hears of further starts; each bus address has its own. Both are released by the kernel
// whatever way the process ends. Where the folder cannot be written there is no such guard, and one
// line says so if there is no bus.
[[nodiscard]] InstanceClaim claimByLock(ApplicationOptions options, MainActor& mainActor);

}  // namespace orvane::host::application
