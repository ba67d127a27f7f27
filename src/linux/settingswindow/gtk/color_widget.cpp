#include <gtk/gtk.h>
#include <gtkmm/box.h>
#include <gtkmm/drawingarea.h>
#include <gtkmm/menubutton.h>
#include <gtkmm/popover.h>

#include <cmath>

#include "linux/settingswindow/gtk/accessible.h"
#include "linux/settingswindow/gtk/control_widgets.h"
#include "linux/settingswindow/gtk/enabling.h"

namespace orvane::window {
namespace {

// The toolkit's palette and editor; its own class has no wrapper.
class ColorChooser {
 public:
  ColorChooser() : widget_(Glib::wrap(gtk_color_chooser_widget_new())) {
    Gtk::manage(widget_);
    gtk_color_chooser_set_use_alpha(chooser(), FALSE);
  }
  Gtk::Widget& widget() { return *widget_; }
  [[nodiscard]] Gdk::RGBA color() const {
    GdkRGBA color{};
    gtk_color_chooser_get_rgba(chooser(), &color);
    return Gdk::RGBA(color.red, color.green, color.blue);
  }
  void setColor(const Gdk::RGBA& color) { gtk_color_chooser_set_rgba(chooser(), color.gobj()); }
  void showPalette() { g_object_set(widget_->gobj(), "show-editor", FALSE, nullptr); }

 private:
  [[nodiscard]] GtkColorChooser* chooser() const { return GTK_COLOR_CHOOSER(widget_->gobj()); }

  Gtk::Widget* widget_;
};

Gdk::RGBA rgbaOf(const Color& color) {
  const SRGB srgb = color.resolved();
  return Gdk::RGBA(static_cast<float>(srgb.red), static_cast<float>(srgb.green),
                   static_cast<float>(srgb.blue));
}

// A swatch that drops down a palette; what is picked there counts at once.
class ColorWidget final : public ControlWidget {
 public:
  ColorWidget(const FormControl& control, const FormHands& hands)
      : key_(control.key), label_(control.label), hands_(hands) {
    chooser_.widget().set_margin(6);
    popover_.set_child(chooser_.widget());
    popover_.signal_show().connect([this] { chooser_.showPalette(); });
    makeSwatch();
    button_.set_child(swatch_);
    button_.set_popover(popover_);
    button_.set_valign(Gtk::Align::CENTER);
    button_.add_css_class("orvane-color");
    show(control);
    chooser_.widget().connect_property_changed("rgba", [this] { picked(); });
  }

  ControlPlace place() const override { return ControlPlace::row; }
  Gtk::Widget& widget() override { return button_; }

  void show(const FormControl& control) override {
    isShowing_ = true;
    color_ = rgbaOf(std::get<FormColorPicker>(control.content).color);
    if (chooser_.color() != color_) chooser_.setColor(color_);
    showColor();
    setEnabled(button_, control.isEnabled);
    isShowing_ = false;
  }

 private:
  void makeSwatch() {
    swatch_.set_content_width(44);
    swatch_.set_content_height(18);
    swatch_.set_draw_func([this](const Cairo::RefPtr<Cairo::Context>& context, int, int) {
      context->set_source_rgb(color_.get_red(), color_.get_green(), color_.get_blue());
      context->paint();
    });
    swatch_.add_css_class("orvane-swatch");
    swatch_.set_overflow(Gtk::Overflow::HIDDEN);
  }

  // The button within is what has the focus, so that it has to tell everything.
  void showColor() {
    swatch_.queue_draw();
    auto* button = button_.get_first_child();
    if (!button) return;
    setAccessibleLabel(*button, label_);
    setAccessibleDescription(*button, color_.to_string());
  }

  void picked() {
    const Gdk::RGBA color = chooser_.color();
    if (isShowing_ || color == color_) return;
    color_ = color;
    showColor();
    hands_.edit({key_, Color::srgb(color.get_red(), color.get_green(), color.get_blue())});
  }

  const std::string key_;
  const std::string label_;
  const FormHands& hands_;
  Gdk::RGBA color_;
  ColorChooser chooser_;
  Gtk::DrawingArea swatch_;
  Gtk::Popover popover_;
  Gtk::MenuButton button_;
  bool isShowing_ = false;
};

}  // namespace

std::unique_ptr<ControlWidget> makeColorPicker(const FormControl& control, const FormHands& hands) {
  return std::make_unique<ColorWidget>(control, hands);
}

}  // namespace orvane::window
