#include "linux/settingswindow/gtk/accessible.h"

#include <gtk/gtk.h>

namespace orvane::window {

void setAccessibleLabel(Gtk::Widget& widget, const std::string& label) {
  gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                 label.c_str(), -1);
}

void setAccessibleDescription(Gtk::Widget& widget, const std::string& description) {
  gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_DESCRIPTION,
                                 description.c_str(), -1);
}

void setAccessibleRole(Gtk::Widget& widget, Gtk::Accessible::Role role) {
  widget.property_accessible_role() = role;
}

}  // namespace orvane::window
