#include "linux/x11/window_hints.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace orvane::host::x11 {

namespace {

enum class Family : std::uint8_t {
  none,
  mutter,
  dockBelow,  // those that ignore BELOW on a desktop but heed it on a dock
  xfwm,
  openbox,
  tiling,
  other,
};

struct Row {
  std::string_view name;  // how the manager's own name begins, in lower case
  Family family;
};

// The first match counts: forks carry their parent's name in their own.
constexpr std::array rows = {
    Row{"mutter (muffin)", Family::dockBelow},
    Row{"muffin", Family::dockBelow},
    Row{"metacity", Family::dockBelow},
    Row{"marco", Family::dockBelow},
    Row{"gnome shell", Family::mutter},
    Row{"mutter", Family::mutter},
    Row{"xfwm4", Family::xfwm},
    Row{"openbox", Family::openbox},
    Row{"i3", Family::tiling},
    Row{"bspwm", Family::tiling},
    Row{"herbstluftwm", Family::tiling},
    Row{"awesome", Family::tiling},
    Row{"qtile", Family::tiling},
    Row{"xmonad", Family::tiling},
    Row{"spectrwm", Family::tiling},
    Row{"dwm", Family::tiling},
};

bool beginsWith(std::string_view text, std::string_view start) {
  const auto same = [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; };
  return text.size() >= start.size() &&
         std::equal(start.begin(), start.end(), text.begin(),
                    [&](char expected, char actual) { return same(actual, expected); });
}

Family familyOf(std::string_view windowManager) {
  if (windowManager.empty()) return Family::none;
  const auto* row = std::find_if(rows.begin(), rows.end(), [&](const Row& candidate) {
    return beginsWith(windowManager, candidate.name);
  });
  return row == rows.end() ? Family::other : row->family;
}

constexpr WindowHints unmanaged{true, WindowType::desktop, true, false};
// What Openbox does not put aside to show the desktop.
constexpr WindowHints splash{false, WindowType::splash, true, false};

WindowHints hintsOnAllWorkspaces(Family family, bool hasDesktopWindow) {
  switch (family) {
    case Family::none:
    case Family::tiling:  // these would tile a desktop window, or give a dock an edge
      return unmanaged;
    case Family::mutter:
    case Family::xfwm:  // both put a desktop window that asks for BELOW one layer above the others
      return {false, WindowType::desktop, true, false};
    case Family::dockBelow:
      return {false, WindowType::dock, true, false};
    case Family::openbox:
      if (hasDesktopWindow) return splash;
      return {false, WindowType::desktop, false, false};
    case Family::other:
      break;
  }
  return {false, WindowType::utility, true, false};
}

}  // namespace

WindowHints hintsFor(std::string_view windowManager, bool hasDesktopWindow, Workspaces workspaces) {
  const auto family = familyOf(windowManager);
  const auto hints = hintsOnAllWorkspaces(family, hasDesktopWindow);
  if (workspaces == Workspaces::all || hints.overrideRedirect) return hints;
  if (family == Family::openbox) return splash;
  // Desktops and docks are put on every workspace whether they want it or not.
  return {false, WindowType::utility, true, false};
}

WindowHints hintsForRaised(std::string_view windowManager) {
  const bool managed = !hintsFor(windowManager, false).overrideRedirect;
  return {!managed, WindowType::utility, false, true};
}

}  // namespace orvane::host::x11
