#pragma once

#include <cstdint>
#include <string_view>

namespace orvane::host::x11 {

// The type of a window as the Extended Window Manager Hints name them.
enum class WindowType : std::uint8_t { desktop, dock, normal, splash, utility };

// Which of the user's workspaces show a window.
enum class Workspaces : std::uint8_t { all, one };

// How a window tells its window manager where in the stack it belongs.
struct WindowHints {
  // Not managed at all: placed by us, at the bottom of the stack.
  bool overrideRedirect = false;
  WindowType type = WindowType::normal;
  bool below = false;
  bool above = false;
  friend bool operator==(const WindowHints&, const WindowHints&) = default;
};

// What keeps a window below every ordinary window and above the desktop's picture, also after the
// desktop was clicked. Window managers disagree about it, so each that is known has its own row.
// `windowManager` is the name that it gives itself; empty when there is none.
// `hasDesktopWindow` tells whether some other program shows a window as the desktop.
[[nodiscard]] WindowHints hintsFor(std::string_view windowManager, bool hasDesktopWindow,
                                   Workspaces workspaces = Workspaces::all);

// For a window of a level above the desktop's: over the ordinary ones.
[[nodiscard]] WindowHints hintsForRaised(std::string_view windowManager);

}  // namespace orvane::host::x11
