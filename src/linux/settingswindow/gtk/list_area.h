#pragma once

#include <gtkmm/widget.h>

namespace orvane::window {

// The place of a list: as high as it should be, or less where there is no room, but not lower than
// the least, however long the list is. The Tab key stops here once and goes on behind it, however
// many rows there are; from row to row it goes by arrow keys.
class ListArea final : public Gtk::Widget {
 public:
  ListArea(double least, double height);
  ~ListArea() override;
  ListArea(const ListArea&) = delete;
  ListArea& operator=(const ListArea&) = delete;

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
