#pragma once

#include <chrono>
#include <string>

#include "linux/x11/connection.h"

namespace orvane::host::x11 {

// As Connection::open(), but waits for no longer than `patience`, and not beyond a signal, since
// what a signal asks for is only done by the loop. Main thread only.
[[nodiscard]] Connection::Opened openWithin(std::chrono::nanoseconds patience,
                                            const std::string& displayName);

}  // namespace orvane::host::x11
