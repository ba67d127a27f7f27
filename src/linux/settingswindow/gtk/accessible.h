#pragma once

#include <gtkmm/widget.h>

#include <string>

namespace orvane::window {

// What screen readers call the widget.
void setAccessibleLabel(Gtk::Widget& widget, const std::string& label);
// What kind of control it is to them. Only before the widget is shown.
void setAccessibleRole(Gtk::Widget& widget, Gtk::Accessible::Role role);

}  // namespace orvane::window
