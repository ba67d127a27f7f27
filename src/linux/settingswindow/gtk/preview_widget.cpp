#include <gtkmm/snapshot.h>
#include <gtkmm/widget.h>

#include <cmath>

#include "linux/settingswindow/gtk/accessible.h"
#include "linux/settingswindow/gtk/control_widgets.h"

namespace orvane::window {
namespace {

// A picture in exactly this size, however many pixels it has. Until it came, nothing is there.
class PictureArea final : public Gtk::Widget {
 public:
  PictureArea() : Glib::ObjectBase("OrvanePictureArea") {
    setAccessibleRole(*this, Gtk::Accessible::Role::IMG);
    set_halign(Gtk::Align::CENTER);
    set_valign(Gtk::Align::START);
  }

  void setSize(Size size) {
    if (size == size_) return;
    size_ = size;
    queue_resize();
  }
  void setPicture(const Glib::RefPtr<Gdk::Texture>& picture) {
    picture_ = picture;
    queue_draw();
  }

 protected:
  void measure_vfunc(Gtk::Orientation orientation, int, int& minimum, int& natural,
                     int& minimumBaseline, int& naturalBaseline) const override {
    const bool isWidth = orientation == Gtk::Orientation::HORIZONTAL;
    minimum = natural = static_cast<int>(std::lround(isWidth ? size_.width : size_.height));
    minimumBaseline = naturalBaseline = -1;
  }
  void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override {
    if (picture_)
      snapshot->append_texture(picture_, Gdk::Rectangle(0, 0, get_width(), get_height()));
  }

 private:
  Size size_;
  Glib::RefPtr<Gdk::Texture> picture_;
};

class PreviewWidget final : public ControlWidget {
 public:
  explicit PreviewWidget(const FormControl& control) {
    setAccessibleLabel(area_, control.label);
    show(control);
  }

  ControlPlace place() const override { return ControlPlace::wide; }
  Gtk::Widget& widget() override { return area_; }
  Gtk::Widget* target() override { return nullptr; }
  void show(const FormControl& control) override {
    area_.setSize(std::get<FormPreview>(control.content).size);
  }
  void showPicture(const Glib::RefPtr<Gdk::Texture>& texture) override {
    area_.setPicture(texture);
  }

 private:
  PictureArea area_;
};

}  // namespace

std::unique_ptr<ControlWidget> makePreview(const FormControl& control, const FormHands&) {
  return std::make_unique<PreviewWidget>(control);
}

}  // namespace orvane::window
