#pragma once

#include <gio/gio.h>

#include "linux/gio/call.h"

namespace orvane::host::gio {

// Subscribes to a signal of its sender (`signal.destination`); an argument may be null. 0, which is
// no subscription, where the connection is closed: nothing will come there any more, and the
// library would call it a fault of the program. The callback comes on the main thread.
[[nodiscard]] guint subscribe(GDBusConnection* connection, const Method& signal,
                              const char* argument, GDBusSignalFlags flags,
                              GDBusSignalCallback heard, gpointer self);

// The library checks that a subscription is still there before it hands on what it had queued, so
// nothing comes after this. Takes 0, too.
void unsubscribe(GDBusConnection* connection, guint subscription);

}  // namespace orvane::host::gio
