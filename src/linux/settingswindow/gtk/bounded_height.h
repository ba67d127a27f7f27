#pragma once

#include <gtkmm/widget.h>

namespace orvane::window {

// A place for one widget that is as high as it should be, or less where there is no room, but not
// lower than the least; whatever the widget in it would like.
class BoundedHeight final : public Gtk::Widget {
 public:
  BoundedHeight(double least, double height);
  ~BoundedHeight() override;
  BoundedHeight(const BoundedHeight&) = delete;
  BoundedHeight& operator=(const BoundedHeight&) = delete;

  // Must outlive this.
  void setChild(Gtk::Widget& child);

 protected:
  Gtk::SizeRequestMode get_request_mode_vfunc() const override;
  void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                     int& minimumBaseline, int& naturalBaseline) const override;
  void size_allocate_vfunc(int width, int height, int baseline) override;

 private:
  const int least_;
  const int height_;
  Gtk::Widget* child_ = nullptr;
};

}  // namespace orvane::window
