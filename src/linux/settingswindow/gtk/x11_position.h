#pragma once

#include <gtkmm/window.h>

#include <functional>
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

// Tells each time that the window was moved or sized on an X server's screen, by whomever; on other
// display systems never.
class MoveWatch {
 public:
  // The window outlives the watch.
  MoveWatch(Gtk::Window& window, std::function<void()> moved);
  ~MoveWatch();
  MoveWatch(const MoveWatch&) = delete;
  MoveWatch& operator=(const MoveWatch&) = delete;

 private:
  Gtk::Window& window_;
  const std::function<void()> moved_;
  unsigned long handler_ = 0;  // the toolkit's number for it
};

}  // namespace orvane::window
