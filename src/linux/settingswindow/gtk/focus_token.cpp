#include "linux/settingswindow/gtk/focus_token.h"

#include <gdk/gdk.h>
#ifdef GDK_WINDOWING_WAYLAND
#include <gdk/wayland/gdkwayland.h>
#endif

namespace orvane::window {

// Of a token that the window is given the toolkit tells no Wayland compositor; one that the display
// is given it uses for whichever window is presented next.
void useFocusToken(Gtk::Window& window, const std::string& token) {
#ifdef GDK_WINDOWING_WAYLAND
  auto* display = window.get_display()->gobj();
  if (GDK_IS_WAYLAND_DISPLAY(display)) {
    gdk_wayland_display_set_startup_notification_id(display, token.c_str());
    return;
  }
#endif
  window.set_startup_id(token);
}

}  // namespace orvane::window
