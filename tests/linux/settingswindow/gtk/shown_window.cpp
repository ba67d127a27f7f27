#include "shown_window.h"

#include <glibmm/main.h>
#include <gtk/gtk.h>
#include <gtkmm/init.h>
#include <xcb/xtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>

#include "linux/settingswindow/gtk/x11_position.h"

namespace orvane::window {
namespace {

// The toolkit can be had once in a process, and so is its display.
const std::string& display() {
  static const desktop_test::Session session;
  static const bool isReady = [] {
    for (const auto& [name, value] : session.environment()) setenv(name.c_str(), value.c_str(), 1);
    for (const auto* name : {"GDK_BACKEND", "GSK_RENDERER"}) unsetenv(name);
    setenv("GDK_BACKEND", "x11", 1);
    setenv("GSK_RENDERER", "cairo", 1);
    setenv("GTK_A11Y", "test", 1);
    if (!gtk_init_check()) return false;
    Gtk::init_gtkmm_internals();
    return true;
  }();
  if (!isReady) throw std::runtime_error("the toolkit has no display");
  return session.display();
}

}  // namespace

ShownWindow::ShownWindow()
    : user_(std::make_unique<desktop_test::Observer>(display())),
      conversation_(std::make_unique<Conversation>(
          [this](const formwire::WindowMessage& message) { heard_.push_back(message); })) {}

// The server outlives the window, and with it what is pressed.
ShownWindow::~ShownWindow() {
  if (isPressed_) pressButton(false);
}

void ShownWindow::show(const Form& form, const formwire::WindowState& state) {
  formwire::Show show;
  show.title = "Settings";
  show.form = form;
  show.state = state;
  show.isCentered = true;
  conversation_->hear(show);
  if (!eventually([&] { return window().get_mapped() && window().get_width() > 0; })) {
    throw std::runtime_error("the window is not shown");
  }
}

void ShownWindow::tell(const Form& form) {
  conversation_->hear(formwire::Update{0, edits().size(), form});
}

bool ShownWindow::eventually(const std::function<bool()>& condition) const {
  const auto context = Glib::MainContext::get_default();
  return desktop_test::eventually([&] {
    while (context->pending()) context->iteration(false);
    return condition();
  });
}

std::vector<FormEdit> ShownWindow::edits() const {
  std::vector<FormEdit> edits;
  for (const auto& message : heard_) {
    if (const auto* edited = std::get_if<formwire::Edited>(&message)) edits.push_back(edited->edit);
  }
  return edits;
}

const formwire::WindowState* ShownWindow::state() const {
  const formwire::WindowState* last = nullptr;
  for (const auto& message : heard_) {
    if (const auto* told = std::get_if<formwire::State>(&message)) last = &told->state;
  }
  return last;
}

void ShownWindow::point(Gtk::Widget& widget, double along) {
  double x = 0;
  double y = 0;
  widget.translate_coordinates(window(), widget.get_width() * along, widget.get_height() / 2.0, x,
                               y);
  double left = 0;
  double top = 0;
  gtk_native_get_surface_transform(GTK_NATIVE(window().gobj()), &left, &top);
  const auto origin = positionOf(window());
  if (!origin) throw std::runtime_error("the window stands nowhere");
  user_->movePointer(static_cast<int>(std::lround(origin->x + left + x)),
                     static_cast<int>(std::lround(origin->y + top + y)));
  user_->sync();
}

void ShownWindow::press(Gtk::Widget& widget, double along) {
  point(widget, along);
  pressButton(true);
}

void ShownWindow::pressButton(bool isDown) {
  isPressed_ = isDown;
  const std::uint8_t event = isDown ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE;
  xcb_test_fake_input(user_->connection(), event, 1, 0, user_->root(), 0, 0, 0);
  user_->sync();
}

void ShownWindow::visit(Gtk::Widget& widget, const std::function<void(Gtk::Widget&)>& seen) {
  seen(widget);
  for (auto* child = widget.get_first_child(); child; child = child->get_next_sibling()) {
    visit(*child, seen);
  }
}

}  // namespace orvane::window
