#pragma once

#include <gtkmm/drawingarea.h>

#include <string>

#include "view/symbols.h"

namespace orvane::window {

// One of our own symbols in the colour of the text around it. It says nothing to screen readers:
// a text always stands beside it.
class SymbolImage final : public Gtk::DrawingArea {
 public:
  // So many points high.
  SymbolImage(const std::string& name, int height);

 private:
  void draw(const Cairo::RefPtr<Cairo::Context>& context, int width, int height);

  const SymbolDrawing drawing_;
};

}  // namespace orvane::window
