#include <gtkmm/eventcontrollerlegacy.h>
#include <gtkmm/scale.h>

#include <utility>

#include "linux/settingswindow/gtk/control_widgets.h"
#include "linux/settingswindow/gtk/enabling.h"

namespace orvane::window {
namespace {

constexpr int kWidth = 260;
// How far an arrow key and a page key move it, as parts of its length.
constexpr double kStep = 0.02;
constexpr double kPage = 0.1;

class SliderWidget final : public ControlWidget {
 public:
  SliderWidget(const FormControl& control, const FormHands& hands)
      : key_(control.key), hands_(hands) {
    const auto& slider = std::get<FormSlider>(control.content);
    const double length = slider.highest - slider.lowest;
    scale_.set_range(slider.lowest, slider.highest);
    scale_.set_increments(length * kStep, length * kPage);
    scale_.set_round_digits(-1);
    scale_.set_draw_value(false);
    scale_.set_size_request(kWidth, -1);
    scale_.set_valign(Gtk::Align::CENTER);
    show(control);
    scale_.signal_value_changed().connect([this] {
      if (!isShowing_) hands_.edit({key_, scale_.get_value()});
    });
    followHand();
  }

  ControlPlace place() const override { return ControlPlace::row; }
  Gtk::Widget& widget() override { return scale_; }
  void show(const FormControl& control) override {
    isShowing_ = true;
    scale_.set_value(std::get<FormSlider>(control.content).value);
    setEnabled(scale_, control.isEnabled);
    isShowing_ = false;
  }

 private:
  // The scale's own gestures claim what is pressed, so that one beside them would not hear of the
  // release.
  void followHand() {
    auto watch = Gtk::EventControllerLegacy::create();
    watch->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    watch->signal_event().connect(
        [this](const Glib::RefPtr<const Gdk::Event>& event) {
          followed(event->get_event_type());
          return false;
        },
        false);
    scale_.add_controller(watch);
    scale_.signal_unmap().connect([this] { setHeld(false); });
  }
  void followed(Gdk::Event::Type type) {
    using enum Gdk::Event::Type;
    if (type == BUTTON_PRESS || type == TOUCH_BEGIN) setHeld(true);
    if (type == BUTTON_RELEASE || type == TOUCH_END || type == TOUCH_CANCEL) setHeld(false);
  }
  void setHeld(bool isHeld) {
    if (std::exchange(isHeld_, isHeld) != isHeld) hands_.hold(key_, isHeld);
  }

  const std::string key_;
  const FormHands& hands_;
  bool isShowing_ = false;
  bool isHeld_ = false;
  Gtk::Scale scale_{Gtk::Orientation::HORIZONTAL};  // goes first, and lets go meanwhile
};

}  // namespace

std::unique_ptr<ControlWidget> makeSlider(const FormControl& control, const FormHands& hands) {
  return std::make_unique<SliderWidget>(control, hands);
}

}  // namespace orvane::window
