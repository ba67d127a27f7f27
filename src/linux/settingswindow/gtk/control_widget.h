#pragma once

#include <gdkmm/texture.h>
#include <gtkmm/adjustment.h>
#include <gtkmm/widget.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "linux/settingswindow/gtk/mnemonics.h"
#include "platform/form.h"

namespace orvane::window {

// What the widgets of a form tell. The functions outlive the widgets.
struct FormHands {
  // The user changed something, which the widget shows already.
  std::function<void(FormEdit)> edit;
  // A control came under the user's hand, or was let go.
  std::function<void(const std::string& key, bool isHeld)> hold;
};

// Where a control stands on its page.
enum class ControlPlace : std::uint8_t {
  row,   // at the end of a row that begins with its label
  wide,  // over the page's whole width
};

// One control of a form as a widget of the toolkit.
class ControlWidget {
 public:
  virtual ~ControlWidget() = default;

  [[nodiscard]] virtual ControlPlace place() const = 0;
  [[nodiscard]] virtual Gtk::Widget& widget() = 0;
  // Gives letters to labels that are part of the widget itself.
  virtual void takeLetters(Mnemonics&) {}
  // What the label's letter takes the user to; null where that is nothing.
  [[nodiscard]] virtual Gtk::Widget* target() { return &widget(); }
  // A click on the label; true where that means something.
  virtual bool activate() { return false; }
  // Takes over value and enabled flag, and tells nobody. The control is of the kind and key that
  // this was made for.
  virtual void show(const FormControl& control) = 0;
  // The picture of a preview, whatever its size in pixels.
  virtual void showPicture(const Glib::RefPtr<Gdk::Texture>&) {}
  // How far it is scrolled; null for what does not scroll.
  [[nodiscard]] virtual Glib::RefPtr<Gtk::Adjustment> scrollPosition() { return {}; }
};

// A widget for a control that shows it already.
[[nodiscard]] std::unique_ptr<ControlWidget> makeControlWidget(const FormControl& control,
                                                               const FormHands& hands);

}  // namespace orvane::window
