#include "linux/settingswindow/gtk/header_box.h"

namespace orvane::window {
namespace {

constexpr int kSymbolHeight = 40;
constexpr int kSpacing = 14;

}  // namespace

HeaderBox::HeaderBox(const FormHeader& header)
    : Gtk::Box(Gtk::Orientation::HORIZONTAL, kSpacing),
      symbol_(header.symbol, kSymbolHeight),
      title_(header.title),
      subtitle_(header.subtitle) {
  symbol_.add_css_class("orvane-accent");
  texts_.append(title_);
  texts_.append(subtitle_);
  append(symbol_);
  append(texts_);
}

}  // namespace orvane::window
