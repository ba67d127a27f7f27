#pragma once

#include <gtkmm/widget.h>

namespace orvane::window {

// Enables or disables a widget. The focus of one that is disabled goes on to the next that can have
// it, as by the Tab key, so that whoever uses the keyboard goes on from there.
void setEnabled(Gtk::Widget& widget, bool isEnabled);

}  // namespace orvane::window
