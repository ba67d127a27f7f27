#pragma once

#include <functional>
#include <memory>

#include "platform/ns_application.h"

namespace orvane::host {

// The program as a desktop without docks sees it: it has no window in any list of its own, whatever
// the policy, and its settings window brings itself to the front. `quit` ends the loop.
[[nodiscard]] std::unique_ptr<NSApplication> makeApplication(std::function<void()> quit);

}  // namespace orvane::host
