#pragma once

#include <gtkmm/label.h>

#include "platform/form.h"

namespace orvane::window {

// A text of the form in its style, wrapped where it has no room.
class TextLabel final : public Gtk::Label {
 public:
  explicit TextLabel(const FormText& text);
};

}  // namespace orvane::window
