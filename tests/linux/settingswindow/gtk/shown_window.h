#pragma once

#include <gtkmm/widget.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "../../../desktop/x11_observer.h"
#include "../../../desktop/x11_session.h"
#include "linux/settingswindow/gtk/conversation.h"

namespace orvane::window {

// The real window on an X server that nobody sees, whose board is the test. One at a time.
class ShownWindow {
 public:
  ShownWindow();
  ~ShownWindow();
  ShownWindow(const ShownWindow&) = delete;
  ShownWindow& operator=(const ShownWindow&) = delete;

  // The window as the board asks for it, once it is on the screen.
  void show(const Form& form, const formwire::WindowState& state = {});
  // The board tells a form, having seen everything that was edited.
  void tell(const Form& form);
  // As where the program ends.
  void end() { conversation_.reset(); }

  // Lets the window do what there is to do until the condition holds; false where that never comes.
  bool eventually(const std::function<bool()>& condition) const;
  [[nodiscard]] SettingsWindow& window() { return *conversation_->window(); }
  [[nodiscard]] std::vector<FormEdit> edits() const;
  [[nodiscard]] const formwire::WindowState* state() const;  // told last; null before

  // The first widget of a type that fits, in the order of the window.
  template <class Wanted>
  [[nodiscard]] Wanted* find(const std::function<bool(Wanted&)>& fits = {}) {
    Wanted* found = nullptr;
    visit(window(), [&](Gtk::Widget& widget) {
      auto* wanted = dynamic_cast<Wanted*>(&widget);
      if (!found && wanted && (!fits || fits(*wanted))) found = wanted;
    });
    return found;
  }
  // Moves the pointer over a widget, so far along it.
  void point(Gtk::Widget& widget, double along);
  // Presses the pointer's first button over a widget, so far along it, and keeps it down for
  // as long as this lives.
  void press(Gtk::Widget& widget, double along);

 private:
  void pressButton(bool isDown);
  static void visit(Gtk::Widget& widget, const std::function<void(Gtk::Widget&)>& seen);

  std::vector<formwire::WindowMessage> heard_;
  std::unique_ptr<desktop_test::Observer> user_;
  bool isPressed_ = false;
  std::unique_ptr<Conversation> conversation_;
};

}  // namespace orvane::window
