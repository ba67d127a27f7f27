#pragma once

#include <chrono>
#include <string>

#include "linux/files/base_directory.h"
#include "linux/gio/handles.h"

namespace orvane::host::gio {

// Where the session bus listens: $DBUS_SESSION_BUS_ADDRESS, else the socket "bus" in
// $XDG_RUNTIME_DIR if it is there. A bus is never started for us. Empty: there is none.
[[nodiscard]] std::string sessionBusAddress(const Environment& environment);

// A connection of its own to the bus at the address, on the default main context; null where none
// can be had within the limit. The library's events are not handled meanwhile. When the bus goes,
// the connection is closed and the program goes on.
[[nodiscard]] ObjectPtr<GDBusConnection> connectToBus(const std::string& address,
                                                      std::chrono::milliseconds limit);

}  // namespace orvane::host::gio
