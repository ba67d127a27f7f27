#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "linux/x11/connection.h"

namespace orvane::host::x11 {

// As Connection::open(), but waits for no longer than `patience`, and not beyond a signal, since
// what a signal asks for is only done by the loop. Twice a second it is asked whether the wait is
// in vain, which ends it, too. Main thread only.
[[nodiscard]] Connection::Opened openWithin(std::chrono::nanoseconds patience,
                                            const std::string& displayName,
                                            const std::function<bool()>& isInVain = {});

}  // namespace orvane::host::x11
