#pragma once

#include <string>

namespace orvane::host::login {

// Whether a desktop entry asks for its program to be started with the session: a [Desktop Entry] of
// an application with a command, neither hidden nor switched off by the user. (Desktop Application
// Autostart Specification, "Hidden" and "Exec"; GNOME's own switch is "X-GNOME-Autostart-enabled".)
[[nodiscard]] bool startsAtLogin(const std::string& entry);

// The entry that starts `program` with the session, as a change of `existing`: what the user wrote
// there besides stays. An existing text that is no desktop entry is replaced.
[[nodiscard]] std::string entryStarting(const std::string& program, const std::string& existing);

}  // namespace orvane::host::login
