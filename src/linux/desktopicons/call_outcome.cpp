#include "linux/desktopicons/call_outcome.h"

namespace orvane::host::desktopicons {

Outcome outcomeOf(GVariant* results, const gio::Failure& failure) {
  if (results) return Outcome::done;
  const bool isOpen = failure.is(G_IO_ERROR, G_IO_ERROR_TIMED_OUT) ||
                      failure.is(G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY) ||
                      failure.is(G_DBUS_ERROR, G_DBUS_ERROR_TIMEOUT);
  return isOpen ? Outcome::unknown : Outcome::refused;
}

}  // namespace orvane::host::desktopicons
