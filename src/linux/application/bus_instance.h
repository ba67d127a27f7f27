#pragma once

#include "linux/application/instance.h"

namespace orvane::host::application {

inline constexpr const char* kName = "org.orvane.Orvane";
inline constexpr const char* kPath = "/org/orvane/Orvane";

// The guard is the program's bus name.
[[nodiscard]] InstanceClaim claimOnBus(ApplicationOptions options, MainActor& mainActor);

}  // namespace orvane::host::application
