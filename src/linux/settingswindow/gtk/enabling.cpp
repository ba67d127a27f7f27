#include "linux/settingswindow/gtk/enabling.h"

#include <gtkmm/window.h>

namespace orvane::window {
namespace {

bool hasFocusWithin(const Gtk::Window& window, Gtk::Widget& widget) {
  const auto* focus = window.get_focus();
  return focus && (focus == &widget || focus->is_ancestor(widget));
}

}  // namespace

void setEnabled(Gtk::Widget& widget, bool isEnabled) {
  auto* window = dynamic_cast<Gtk::Window*>(widget.get_root());
  if (!isEnabled && window && hasFocusWithin(*window, widget)) {
    window->child_focus(Gtk::DirectionType::TAB_FORWARD);
  }
  widget.set_sensitive(isEnabled);
}

}  // namespace orvane::window
