#pragma once

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/scrolledwindow.h>

#include <map>
#include <memory>
#include <string>

#include "linux/settingswindow/gtk/control_widget.h"
#include "linux/settingswindow/gtk/mnemonics.h"
#include "platform/form.h"

namespace orvane::window {

// What stands in one tab. It scrolls where the window has less room than the controls need.
class FormPage final : public Gtk::ScrolledWindow {
 public:
  // Letters that the page's labels may not have are taken already. `form` gives the distances.
  FormPage(const Form& form, const FormTab& tab, Mnemonics mnemonics, const FormHands& hands);

  // Null where the page has no such control.
  [[nodiscard]] ControlWidget* control(const std::string& key) const;
  // How far each scrolling part is scrolled, the page itself under an empty name.
  [[nodiscard]] std::map<std::string, Glib::RefPtr<Gtk::Adjustment>> scrollPositions() const;

 private:
  void addSection(const FormSection& section, const FormHands& hands);
  Gtk::Label& addTitle(const std::string& title);
  void addRow(Gtk::Box& card, const std::string& label, ControlWidget& control);
  static void name(Gtk::Widget& target, const std::string& label, Gtk::Label* title);
  static Gtk::Box& addCard(Gtk::Box& column);
  ControlWidget& make(const FormControl& control, const FormHands& hands);

  const int rowPadding_;
  const int spacing_;
  const bool isSideBySide_;
  Mnemonics mnemonics_;
  Gtk::Box column_{Gtk::Orientation::VERTICAL};
  std::map<std::string, std::unique_ptr<ControlWidget>, std::less<>> controls_;
};

}  // namespace orvane::window
