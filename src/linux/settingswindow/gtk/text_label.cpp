#include "linux/settingswindow/gtk/text_label.h"

namespace orvane::window {
namespace {

const char* classOf(FormTextStyle style) {
  switch (style) {
    case FormTextStyle::title:
      return "orvane-title";
    case FormTextStyle::headline:
      return "orvane-headline";
    case FormTextStyle::callout:
      return "orvane-callout";
    case FormTextStyle::caption:
      return "orvane-caption";
    case FormTextStyle::body:
      return "orvane-body";
  }
  return "orvane-body";
}

}  // namespace

TextLabel::TextLabel(const FormText& text) : Gtk::Label(text.text) {
  set_xalign(0);
  set_wrap();
  set_natural_wrap_mode(Gtk::NaturalWrapMode::NONE);
  add_css_class(classOf(text.style));
  if (text.isSemibold) add_css_class("orvane-semibold");
  if (text.isSecondary) add_css_class("orvane-secondary");
}

}  // namespace orvane::window
