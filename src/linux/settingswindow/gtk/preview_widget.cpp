#include <gtkmm/picture.h>

#include <cmath>

#include "linux/settingswindow/gtk/accessible.h"
#include "linux/settingswindow/gtk/control_widgets.h"

namespace orvane::window {
namespace {

// Shows what the board's program drew, in exactly its size. Until that came, nothing is there.
class PreviewWidget final : public ControlWidget {
 public:
  explicit PreviewWidget(const FormControl& control) {
    setAccessibleLabel(picture_, control.label);
    picture_.set_can_shrink(true);
    picture_.set_keep_aspect_ratio(false);
    picture_.set_halign(Gtk::Align::CENTER);
    picture_.set_valign(Gtk::Align::START);
    picture_.add_css_class("orvane-preview");
    show(control);
  }

  ControlPlace place() const override { return ControlPlace::wide; }
  Gtk::Widget& widget() override { return picture_; }
  Gtk::Widget* target() override { return nullptr; }
  void show(const FormControl& control) override {
    const Size size = std::get<FormPreview>(control.content).size;
    picture_.set_size_request(static_cast<int>(std::lround(size.width)),
                              static_cast<int>(std::lround(size.height)));
  }
  void showPicture(const Glib::RefPtr<Gdk::Texture>& texture) override {
    picture_.set_paintable(texture);
  }

 private:
  Gtk::Picture picture_;
};

}  // namespace

std::unique_ptr<ControlWidget> makePreview(const FormControl& control, const FormHands&) {
  return std::make_unique<PreviewWidget>(control);
}

}  // namespace orvane::window
