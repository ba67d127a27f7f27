#pragma once

#include <gtkmm/window.h>

#include <optional>

#include "view/geometry.h"

namespace orvane::window {

// Where the window stands on an X server's screen, its shadow included, in points. Nothing on other
// display systems, which do not tell, and while it is not shown.
[[nodiscard]] std::optional<Point> positionOf(Gtk::Window& window);

// Moves a window that was just shown to where it stood, unless no screen is there any more, or else
// to the middle of its screen. Does nothing on other display systems, which place windows as they
// see fit.
void moveTo(Gtk::Window& window, const std::optional<Point>& position);

}  // namespace orvane::window
