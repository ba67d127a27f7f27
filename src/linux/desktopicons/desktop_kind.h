#pragma once

#include <string_view>

namespace orvane::host::desktopicons {

enum class DesktopKind { none, xfce, gnome, cinnamon, mate, budgie, plasma };

// Which desktop's icons there may be, by $XDG_CURRENT_DESKTOP: names separated by colons, the most
// special one first (Desktop Entry Specification, "OnlyShowIn"). Case does not count.
[[nodiscard]] DesktopKind desktopKind(std::string_view currentDesktop);

}  // namespace orvane::host::desktopicons
