#include <gtkmm/switch.h>

#include "linux/settingswindow/gtk/control_widgets.h"
#include "linux/settingswindow/gtk/enabling.h"

namespace orvane::window {
namespace {

class ToggleWidget final : public ControlWidget {
 public:
  ToggleWidget(const FormControl& control, const FormHands& hands)
      : key_(control.key), hands_(hands) {
    switch_.set_valign(Gtk::Align::CENTER);
    show(control);
    switch_.property_active().signal_changed().connect([this] {
      if (!isShowing_) hands_.edit({key_, switch_.get_active()});
    });
  }

  ControlPlace place() const override { return ControlPlace::row; }
  Gtk::Widget& widget() override { return switch_; }
  bool activate() override {
    if (switch_.is_sensitive()) switch_.set_active(!switch_.get_active());
    return true;
  }
  void show(const FormControl& control) override {
    isShowing_ = true;
    switch_.set_active(std::get<FormToggle>(control.content).isOn);
    setEnabled(switch_, control.isEnabled);
    isShowing_ = false;
  }

 private:
  const std::string key_;
  const FormHands& hands_;
  Gtk::Switch switch_;
  bool isShowing_ = false;
};

}  // namespace

std::unique_ptr<ControlWidget> makeToggle(const FormControl& control, const FormHands& hands) {
  return std::make_unique<ToggleWidget>(control, hands);
}

}  // namespace orvane::window
