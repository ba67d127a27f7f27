#include "linux/gio/subscription.h"

namespace orvane::host::gio {

guint subscribe(GDBusConnection* connection, const Method& signal, const char* argument,
                GDBusSignalFlags flags, GDBusSignalCallback heard, gpointer self) {
  if (g_dbus_connection_is_closed(connection)) return 0;
  return g_dbus_connection_signal_subscribe(
      connection, signal.destination.c_str(), signal.interface.c_str(), signal.name.c_str(),
      signal.path.c_str(), argument, flags, heard, self, nullptr);
}

void unsubscribe(GDBusConnection* connection, guint subscription) {
  if (subscription != 0) g_dbus_connection_signal_unsubscribe(connection, subscription);
}

}  // namespace orvane::host::gio
