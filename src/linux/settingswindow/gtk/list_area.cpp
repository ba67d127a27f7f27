#include "linux/settingswindow/gtk/list_area.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <cmath>

namespace orvane::window {
namespace {

// The toolkit's own way goes through all rows. Its class has no wrapper for this.
gboolean moveFocus(GtkWidget* area, GtkDirectionType direction) {
  const bool isTab = direction == GTK_DIR_TAB_FORWARD || direction == GTK_DIR_TAB_BACKWARD;
  if (isTab && gtk_widget_get_focus_child(area)) return FALSE;
  GtkWidget* child = gtk_widget_get_first_child(area);
  return child && gtk_widget_child_focus(child, direction);
}

}  // namespace

ListArea::ListArea(double least, double height)
    : Glib::ObjectBase("OrvaneListArea"),
      least_(static_cast<int>(std::lround(least))),
      height_(std::max(least_, static_cast<int>(std::lround(height)))) {
  GTK_WIDGET_GET_CLASS(gobj())->focus = moveFocus;
}

ListArea::~ListArea() {
  if (child_) child_->unparent();
}

void ListArea::setChild(Gtk::Widget& child) {
  child_ = &child;
  child.set_parent(*this);
}

Gtk::SizeRequestMode ListArea::get_request_mode_vfunc() const {
  return Gtk::SizeRequestMode::CONSTANT_SIZE;
}

void ListArea::measure_vfunc(Gtk::Orientation orientation, int, int& minimum, int& natural,
                             int& minimumBaseline, int& naturalBaseline) const {
  minimumBaseline = naturalBaseline = -1;
  minimum = natural = 0;
  if (orientation == Gtk::Orientation::VERTICAL) {
    minimum = least_;
    natural = height_;
  } else if (child_) {
    int baseline = 0;
    child_->measure(orientation, -1, minimum, natural, baseline, baseline);
  }
}

void ListArea::size_allocate_vfunc(int width, int height, int) {
  if (child_) child_->size_allocate({0, 0, width, height}, -1);
}

}  // namespace orvane::window
