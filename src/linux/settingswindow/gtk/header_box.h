#pragma once

#include <gtkmm/box.h>

#include "linux/settingswindow/gtk/symbol_image.h"
#include "linux/settingswindow/gtk/text_label.h"
#include "platform/form.h"

namespace orvane::window {

// The form's symbol, and beside it the title over the subtitle.
class HeaderBox final : public Gtk::Box {
 public:
  explicit HeaderBox(const FormHeader& header);

 private:
  SymbolImage symbol_;
  TextLabel title_;
  TextLabel subtitle_;
  Gtk::Box texts_{Gtk::Orientation::VERTICAL, 1};
};

}  // namespace orvane::window
