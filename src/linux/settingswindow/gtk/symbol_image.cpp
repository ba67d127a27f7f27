#include "linux/settingswindow/gtk/symbol_image.h"

#include <gdkmm/general.h>

#include <cmath>

#include "linux/settingswindow/gtk/accessible.h"

namespace orvane::window {
namespace {

using Context = Cairo::RefPtr<Cairo::Context>;

void add(const Context& context, const PathCommand& command) {
  const auto& [a, b, c] = command.points;
  switch (command.verb) {
    case PathCommand::Verb::move:
      return context->move_to(a.x, a.y);
    case PathCommand::Verb::line:
      return context->line_to(a.x, a.y);
    case PathCommand::Verb::curve:
      return context->curve_to(a.x, a.y, b.x, b.y, c.x, c.y);
    case PathCommand::Verb::close:
      return context->close_path();
  }
}

void add(const Context& context, const Path& path) {
  context->begin_new_path();
  for (const auto& command : path) add(context, command);
}

}  // namespace

SymbolImage::SymbolImage(const std::string& name, int height) : drawing_(symbolDrawing(name)) {
  setAccessibleRole(*this, Gtk::Accessible::Role::PRESENTATION);
  add_css_class("orvane-symbol");
  const double width = drawing_.width * height / symbolGridHeight;
  set_content_width(static_cast<int>(std::ceil(width)));
  set_content_height(height);
  set_valign(Gtk::Align::CENTER);
  set_halign(Gtk::Align::CENTER);
  set_draw_func(sigc::mem_fun(*this, &SymbolImage::draw));
}

void SymbolImage::draw(const Context& context, int width, int height) {
  const double scale = height / symbolGridHeight;
  context->translate((width - drawing_.width * scale) / 2, 0);
  context->scale(scale, scale);
  context->set_line_cap(Cairo::Context::LineCap::ROUND);
  context->set_line_join(Cairo::Context::LineJoin::ROUND);
  context->set_line_width(symbolLineWidth(FontWeight::regular));
  // Lines cross, and are one drawing all the same where the colour is translucent.
  const auto color = get_style_context()->get_color();
  context->push_group();
  context->set_source_rgb(color.get_red(), color.get_green(), color.get_blue());
  for (const auto& path : drawing_.strokes) {
    add(context, path);
    context->stroke();
  }
  for (const auto& path : drawing_.fills) {
    add(context, path);
    context->fill();
  }
  context->pop_group_to_source();
  context->paint_with_alpha(color.get_alpha());
}

}  // namespace orvane::window
