#pragma once

#include <memory>
#include <string>

#include "foundation/main_actor.h"
#include "linux/files/base_directory.h"
#include "platform/session_sight.h"

namespace orvane::host {

struct LoginSessionOptions {
  std::string systemBus;     // its address; empty: there is none
  std::string sessionId;     // XDG_SESSION_ID; may be empty, or of a session that is over
  std::string x11Display;    // DISPLAY
  bool isOnWayland = false;  // whether WAYLAND_DISPLAY is set
  // After the first frame; connecting costs a thread for a moment.
  Duration delay = std::chrono::seconds(1);
};

[[nodiscard]] LoginSessionOptions loginSessionOptions(const Environment& environment);

// What logind tells of the graphical session that this program's display belongs to: its LockedHint
// and whether it is Active (org.freedesktop.login1, interface Session). Nothing is known without a
// system bus, without logind, or where neither the session's id, this process nor this user has a
// session with our display. Never waits and writes nothing. `mainActor` outlives it.
[[nodiscard]] std::unique_ptr<SessionSight> makeLoginSession(LoginSessionOptions options,
                                                             MainActor& mainActor);

}  // namespace orvane::host
