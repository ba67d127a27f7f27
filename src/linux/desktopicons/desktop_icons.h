// desktopicons/ carries out the one script that the program knows: hiding and showing the icons of
// the desktop.
#pragma once

#include <memory>

#include "platform/ns_apple_script.h"

namespace orvane::host {

// Understands the two scripts that hide and show the icons, and no other text. On a desktop without
// icons they do nothing. Main thread only.
[[nodiscard]] std::unique_ptr<AppleScripts> makeDesktopIcons();

}  // namespace orvane::host
