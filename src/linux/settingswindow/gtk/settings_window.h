#pragma once

#include <gtkmm/window.h>

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "linux/settingswindow/gtk/control_widget.h"
#include "linux/settingswindow/gtk/form_pane.h"
#include "linux/settingswindow/gtk/header_box.h"
#include "linux/settingswindow/gtk/title_band.h"
#include "linux/settingswindow/gtk/wanted_offsets.h"
#include "linux/settingswindow/gtk/x11_position.h"
#include "linux/settingswindow/wire/messages.h"
#include "platform/form.h"

namespace orvane::window {

// The window itself: its frame, its keys, and the form's header over a pane with the rest. As large
// as the form says; where the title bar is transparent, the header stands in it.
class SettingsWindow final : public Gtk::Window {
 public:
  struct Hands {
    FormHands form;
    // The user closes it, which hides it between these two.
    std::function<void()> closing;
    std::function<void()> closed;
    // It was moved or scrolled, or its screen has another scale.
    std::function<void()> moved;
  };

  explicit SettingsWindow(Hands hands);

  void setStyle(const std::string& title, const formwire::WindowStyle& style);
  // A form of other controls than the one before, or the first one.
  void make(const Form& form);
  void show(const FormChanges& changes);
  void showPicture(const std::string& key, const Glib::RefPtr<Gdk::Texture>& picture);

  [[nodiscard]] WantedOffsets::Offsets scrollOffsets() const;
  // Applied as soon as there is that much to scroll, unless the user scrolls before.
  void setScrollOffsets(WantedOffsets::Offsets offsets);

 private:
  void placeHeader(const Form& form);
  bool pressed(guint key, Gdk::ModifierType modifiers);
  bool pressedReturn();
  bool leave();
  void followScrolling();
  void restoreScroll(const std::string& name);
  void scrollAsWanted(const std::string& name);

  const Hands hands_;
  formwire::WindowStyle style_;
  std::unique_ptr<HeaderBox> header_;
  std::unique_ptr<TitleBand> titleBand_;
  std::unique_ptr<FormPane> pane_;
  WantedOffsets wantedOffsets_;
  MoveWatch moves_{*this, [this] { hands_.moved(); }};
  bool isReturnDone_ = false;
};

}  // namespace orvane::window
