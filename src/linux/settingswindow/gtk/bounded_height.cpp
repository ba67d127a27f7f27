#include "linux/settingswindow/gtk/bounded_height.h"

#include <algorithm>
#include <cmath>

namespace orvane::window {

BoundedHeight::BoundedHeight(double least, double height)
    : Glib::ObjectBase("OrvaneBoundedHeight"),
      least_(static_cast<int>(std::lround(least))),
      height_(std::max(least_, static_cast<int>(std::lround(height)))) {}

BoundedHeight::~BoundedHeight() {
  if (child_) child_->unparent();
}

void BoundedHeight::setChild(Gtk::Widget& child) {
  child_ = &child;
  child.set_parent(*this);
}

Gtk::SizeRequestMode BoundedHeight::get_request_mode_vfunc() const {
  return Gtk::SizeRequestMode::CONSTANT_SIZE;
}

void BoundedHeight::measure_vfunc(Gtk::Orientation orientation, int, int& minimum, int& natural,
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

void BoundedHeight::size_allocate_vfunc(int width, int height, int) {
  if (child_) child_->size_allocate({0, 0, width, height}, -1);
}

}  // namespace orvane::window
