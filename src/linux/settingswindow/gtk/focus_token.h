#pragma once

#include <gtkmm/window.h>

#include <string>

namespace orvane::window {

// Has the window take the focus with this XDG activation token or startup id when it is presented
// next.
void useFocusToken(Gtk::Window& window, const std::string& token);

}  // namespace orvane::window
