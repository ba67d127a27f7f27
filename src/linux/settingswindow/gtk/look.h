#pragma once

#include <gdkmm/rgba.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/widget.h>

#include <optional>

namespace orvane::window {

// How the window looks on top of the desktop's theme: our own style sheet, which takes its colours
// from the theme, but for an accent that the desktop may name apart. An accent that could not be
// seen on the theme's background is moved until it can.
class Look {
 public:
  // For everything on the widget's display.
  explicit Look(Gtk::Widget& window);

  void setAccent(const std::optional<Gdk::RGBA>& accent);

 private:
  void followTheme();
  void colorAccent();

  Gtk::Widget& window_;
  std::optional<Gdk::RGBA> named_;
  Glib::RefPtr<Gtk::CssProvider> sheet_ = Gtk::CssProvider::create();
  Glib::RefPtr<Gtk::CssProvider> accent_ = Gtk::CssProvider::create();
};

}  // namespace orvane::window
