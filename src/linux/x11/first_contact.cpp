#include "linux/x11/first_contact.h"

#include <system_error>

#include "linux/xcb/attempt.h"

namespace orvane::host::x11 {

Connection::Opened openWithin(std::chrono::nanoseconds patience, const std::string& displayName,
                              const std::function<bool()>& isInVain) {
  try {
    xcb::Attempt<Connection::Opened> attempt(
        [displayName] { return Connection::open(displayName); });
    if (attempt.done().waitFor(patience, isInVain)) return attempt.take();
    return {nullptr, "The X display does not answer."};
  } catch (const std::system_error& error) {
    return {nullptr, std::string("The X display cannot be opened: ") + error.what() + "."};
  }
}

}  // namespace orvane::host::x11
