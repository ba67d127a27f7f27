#include <gtkmm/label.h>

#include "linux/settingswindow/gtk/control_widgets.h"

namespace orvane::window {
namespace {

class CaptionWidget final : public ControlWidget {
 public:
  explicit CaptionWidget(const FormControl& control) {
    label_.set_wrap();
    label_.set_xalign(0);
    label_.add_css_class("orvane-caption");
    label_.add_css_class("orvane-secondary");
    show(control);
  }

  ControlPlace place() const override { return ControlPlace::wide; }
  Gtk::Widget& widget() override { return label_; }
  Gtk::Widget* target() override { return nullptr; }
  void show(const FormControl& control) override {
    label_.set_text(control.label);
    label_.set_sensitive(control.isEnabled);
  }

 private:
  Gtk::Label label_;
};

}  // namespace

std::unique_ptr<ControlWidget> makeCaption(const FormControl& control, const FormHands&) {
  return std::make_unique<CaptionWidget>(control);
}

}  // namespace orvane::window
