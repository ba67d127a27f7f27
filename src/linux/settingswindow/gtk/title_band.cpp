#include "linux/settingswindow/gtk/title_band.h"

#include <gtkmm/settings.h>

#include "linux/settingswindow/gtk/decoration.h"

namespace orvane::window {
namespace {

// The buttons have a margin of their own.
constexpr int kButtonsFromEdge = 8;

}  // namespace

TitleBand::TitleBand(const formwire::WindowStyle& style, int padding) : style_(style) {
  add_css_class("orvane-titleband");
  for (auto* controls : {&start_, &end_}) controls->set_valign(Gtk::Align::START);
  start_.set_margin_top(kButtonsFromEdge);
  end_.set_margin_end(kButtonsFromEdge);
  end_.set_margin_top(kButtonsFromEdge);
  // Without a button it would move what stands beside it.
  start_.property_empty().signal_changed().connect(
      [this] { start_.set_visible(!start_.get_empty()); });
  row_.append(start_);
  row_.append(end_);
  row_.set_margin_start(padding);
  set_child(row_);
  followDesktop();
  start_.set_visible(!start_.get_empty());
  Gtk::Settings::get_default()->property_gtk_decoration_layout().signal_changed().connect(
      sigc::mem_fun(*this, &TitleBand::followDesktop));
}

void TitleBand::setContent(Gtk::Widget& content) {
  if (content_) row_.remove(*content_);
  content_ = &content;
  content.set_hexpand();
  row_.insert_child_after(content, start_);
}

void TitleBand::followDesktop() {
  const auto layout = Gtk::Settings::get_default()->property_gtk_decoration_layout().get_value();
  const auto buttons = titleButtons(layout.raw(), style_.isClosable, style_.isMiniaturizable);
  for (auto* controls : {&start_, &end_}) controls->set_decoration_layout(buttons);
}

}  // namespace orvane::window
