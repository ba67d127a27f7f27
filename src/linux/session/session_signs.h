// linux/session/ knows by what a user's session can be told to be over.
#pragma once

#include <memory>

#include "linux/files/base_directory.h"

namespace orvane::host {

// Signs of life of the user's session. Only what was there at the beginning can be missed, so that
// a session without a sign never ends.
class SessionSigns {
 public:
  virtual ~SessionSigns() = default;
  // Whether a sign is gone: the runtime folder (XDG_RUNTIME_DIR), which goes with the user's last
  // session, or whoever listens at the session bus's address (DBUS_SESSION_BUS_ADDRESS). Looks
  // anew each time and never waits.
  [[nodiscard]] virtual bool hasEnded() const = 0;
};

[[nodiscard]] std::unique_ptr<SessionSigns> makeSessionSigns(const Environment& environment);

}  // namespace orvane::host
