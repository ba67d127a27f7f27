#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvane::host {

// Where a bus listens on this machine, as the kernel names it: a path, or a zero byte and an
// abstract name. Nothing for an address of another kind; of several, the first of ours. The form of
// addresses stands in the D-Bus specification under "Server Addresses".
[[nodiscard]] std::optional<std::string> localBusSocket(std::string_view address);

}  // namespace orvane::host
