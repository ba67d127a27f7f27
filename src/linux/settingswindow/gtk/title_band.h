#pragma once

#include <gtkmm/box.h>
#include <gtkmm/windowcontrols.h>
#include <gtkmm/windowhandle.h>

#include "linux/settingswindow/wire/messages.h"

namespace orvane::window {

// The upper part of a window whose title bar is transparent: its buttons beside what the window
// shows there, and everything else to move the window by. The title is left to the task list.
class TitleBand final : public Gtk::WindowHandle {
 public:
  // So far from the window's edges.
  TitleBand(const formwire::WindowStyle& style, int padding);

  // Must outlive the band, or be replaced before it goes.
  void setContent(Gtk::Widget& content);

 private:
  void followDesktop();

  const formwire::WindowStyle style_;
  Gtk::Widget* content_ = nullptr;
  Gtk::WindowControls start_{Gtk::PackType::START};
  Gtk::WindowControls end_{Gtk::PackType::END};
  Gtk::Box row_{Gtk::Orientation::HORIZONTAL, 12};
};

}  // namespace orvane::window
