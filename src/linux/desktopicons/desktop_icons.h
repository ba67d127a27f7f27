// desktopicons/ carries out the one script that the program knows: hiding and showing the icons of
// the desktop, whatever that means on the desktop at hand.
#pragma once

#include <gio/gio.h>

#include <filesystem>
#include <memory>
#include <string>

#include "foundation/main_actor.h"
#include "linux/files/base_directory.h"
#include "platform/ns_apple_script.h"

namespace orvane::host {

struct DesktopIconsOptions {
  std::string currentDesktop;             // $XDG_CURRENT_DESKTOP
  GDBusConnection* connection = nullptr;  // the session bus; null: none
  // Where the user's own choice is written down while ours holds; empty: then nothing is hidden.
  std::filesystem::path stateFile;
  MainActor* mainActor = nullptr;  // null: icons of screens that come later are not looked for
};

// Understands the two scripts that hide and show the icons, and no other text. They return at once;
// what the desktop makes of them is not waited for. On a desktop without icons they do nothing.
class DesktopIcons : public AppleScripts {
 public:
  // Gives back what a run before this one has hidden and did not live to give back.
  virtual void giveBackLeftovers() = 0;
  // There are other screens than before. What the desktop puts on a new one a moment later is
  // hidden like the rest, where that is hidden.
  virtual void screensChanged() = 0;
};
[[nodiscard]] std::unique_ptr<DesktopIcons> makeDesktopIcons(const DesktopIconsOptions& options);

// Where this user's choice is remembered: orvane/desktop-icons in $XDG_STATE_HOME, which counts
// only where it is absolute, else in ~/.local/state. Empty for a user without a home.
[[nodiscard]] std::filesystem::path desktopIconsStatePath(const Environment& environment);

}  // namespace orvane::host
