#pragma once

#include <gtkmm/widget.h>

#include <string>

namespace orvane::window {

// What screen readers call the widget. One that a label was made for by its letter (mnemonic
// widget) is called like that already.
void setAccessibleLabel(Gtk::Widget& widget, const std::string& label);
// What they add to that, such as a value that the kind of control does not tell.
void setAccessibleDescription(Gtk::Widget& widget, const std::string& description);
// What kind of control it is to them. Only before the widget is shown.
void setAccessibleRole(Gtk::Widget& widget, Gtk::Accessible::Role role);

}  // namespace orvane::window
