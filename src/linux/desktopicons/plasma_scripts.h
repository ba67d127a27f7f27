#pragma once

#include <optional>
#include <string>

#include "linux/desktopicons/icon_backend.h"

namespace orvane::host::desktopicons {

// Texts for Plasma's own scripting (org.kde.PlasmaShell.evaluateScript). A desktop's icons are the
// files of a folder that its filter lets through; they are hidden by a filter that lets none
// through. Which desktops there are, and what was set on each of them, is JSON on the way out and
// on the way back.

// Prints what is set on each desktop that shows a folder.
[[nodiscard]] std::string plasmaCaptureScript();
// The state that a capture's output means; nothing where no desktop shows icons, or for any other
// text.
[[nodiscard]] std::optional<IconState> plasmaState(const std::string& printed);
// What a further capture's output has beyond the known state; nothing where it has nothing more.
[[nodiscard]] std::optional<NewIcons> plasmaNewIcons(const IconState& known,
                                                     const std::string& printed);
// Nothing for a state that no capture made.
[[nodiscard]] std::optional<std::string> plasmaHideScript(const IconState& state);
// Leaves desktops alone whose filter is not ours any more. What was not set is unset again, and
// icons stand where they stood: Plasma forgets the places of files that it does not show.
[[nodiscard]] std::optional<std::string> plasmaGiveBackScript(const IconState& state);

}  // namespace orvane::host::desktopicons
