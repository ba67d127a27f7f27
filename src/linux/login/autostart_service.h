// login/ starts the program with the session, by an XDG autostart entry of the user's own.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "linux/files/base_directory.h"
#include "platform/sm_app_service.h"

namespace orvane::host {

struct AutostartOptions {
  std::filesystem::path entry;  // the desktop entry; empty: nowhere, so that nothing succeeds
  std::string program;          // absolute path of what is to be started
};

// Asks the file anew each time, since the user and the desktop's own settings change it too. It is
// written whole or not at all.
[[nodiscard]] std::unique_ptr<SMAppService> makeAutostartService(AutostartOptions options);

// Where this user's entry lies: autostart/org.orvane.Orvane.desktop in $XDG_CONFIG_HOME, which
// counts only where it is absolute, else in ~/.config. Empty for a user without a home.
[[nodiscard]] std::filesystem::path autostartEntryPath(const Environment& environment);

}  // namespace orvane::host
