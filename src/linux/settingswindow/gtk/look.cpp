#include "linux/settingswindow/gtk/look.h"

#include <gtkmm/settings.h>
#include <gtkmm/stylecontext.h>

#include <array>
#include <cstdio>
#include <string>

namespace orvane::window {
namespace {

constexpr unsigned kPriority = 600;  // of an application, above the theme and below the user's own

constexpr const char* kSheet = R"css(
.orvane-settings { background-color: @orvane_bg; }
.orvane-titlebar { background: none; border: none; box-shadow: none; min-height: 40px; padding: 0 8px; }
.orvane-titlebar .title { font-weight: 600; opacity: .75; }

.orvane-title { font-size: 1.5em; }
.orvane-semibold, .orvane-headline { font-weight: 600; }
.orvane-callout { font-size: .95em; }
.orvane-caption { font-size: .88em; }
.orvane-secondary { color: alpha(currentColor, .62); }
.orvane-accent { color: @orvane_accent; }

.orvane-tabs { background-color: alpha(currentColor, .07); border-radius: 10px; padding: 3px; }
.orvane-tabs button {
  background: none; border: none; box-shadow: none; border-radius: 8px; padding: 5px 10px;
  margin: 0 1px; min-height: 22px; font-weight: normal; color: alpha(currentColor, .78);
  transition: background-color 120ms ease;
}
.orvane-tabs button:hover { background-color: alpha(currentColor, .06); }
.orvane-tabs button:checked {
  background-color: @orvane_raised; color: @theme_fg_color; font-weight: 600;
  box-shadow: 0 1px 2px alpha(black, .16), 0 0 0 1px alpha(black, .05);
}
.orvane-tabs button:checked drawingarea, .orvane-tabs button:checked widget { color: @orvane_accent; }

.orvane-pages { background-color: @orvane_panel; border-radius: 12px; }

.orvane-card {
  background-color: @orvane_card; border: 1px solid alpha(currentColor, .09); border-radius: 10px;
}
.orvane-row { padding: 0 14px; }
.orvane-row:not(:first-child) { border-top: 1px solid alpha(currentColor, .08); }
.orvane-row label:disabled { color: alpha(currentColor, .45); }

.orvane-rows { background: none; }
.orvane-rows > row { background: none; padding: 0; border: none; }
.orvane-rows > row:hover { background-color: alpha(currentColor, .04); }
.orvane-rows checkbutton { padding: 0; border-spacing: 8px; }

.orvane-small { padding: 2px 12px; min-height: 20px; border-radius: 7px; }
.orvane-done { padding: 5px 26px; border-radius: 8px; font-weight: 600; }
.orvane-color > button { padding: 6px; }
.orvane-swatch { border-radius: 4px; }

.orvane-settings switch:checked { background-color: @orvane_accent; border-color: @orvane_accent; background-image: none; }
.orvane-settings check:checked { background-color: @orvane_accent; border-color: @orvane_accent; background-image: none; color: white; }
.orvane-settings check { -gtk-icon-size: 14px; }
.orvane-settings scale highlight { background-color: @orvane_accent; border-color: @orvane_accent; background-image: none; }
.orvane-settings button.suggested-action {
  background-color: @orvane_accent; border-color: @orvane_accent; background-image: none; color: white;
  box-shadow: none; text-shadow: none;
}
.orvane-settings button.suggested-action:hover { background-color: shade(@orvane_accent, 1.08); }
.orvane-settings button.suggested-action:active { background-color: shade(@orvane_accent, .9); }
)css";

constexpr const char* kLightColors = R"css(
@define-color orvane_bg @theme_bg_color;
@define-color orvane_panel alpha(@theme_fg_color, .035);
@define-color orvane_card @theme_base_color;
@define-color orvane_raised @theme_base_color;
)css";
constexpr const char* kDarkColors = R"css(
@define-color orvane_bg shade(@theme_bg_color, .82);
@define-color orvane_panel alpha(@theme_fg_color, .04);
@define-color orvane_card mix(@theme_bg_color, white, .035);
@define-color orvane_raised mix(@theme_bg_color, white, .14);
)css";

double luminance(const Gdk::RGBA& color) {
  return 0.2126 * color.get_red() + 0.7152 * color.get_green() + 0.0722 * color.get_blue();
}

std::string hex(const Gdk::RGBA& color) {
  std::array<char, 8> text{};
  const auto part = [](float value) { return static_cast<unsigned>(value * 255 + 0.5F); };
  std::snprintf(text.data(), text.size(), "#%02x%02x%02x", part(color.get_red()),
                part(color.get_green()), part(color.get_blue()));
  return text.data();
}

void add(const Glib::RefPtr<Gdk::Display>& display, const Glib::RefPtr<Gtk::CssProvider>& sheet) {
  Gtk::StyleContext::add_provider_for_display(display, sheet, kPriority);
}

}  // namespace

Look::Look(Gtk::Widget& window) : window_(window) {
  setAccent(std::nullopt);
  followTheme();
  add(window.get_display(), accent_);
  add(window.get_display(), sheet_);
  const auto settings = Gtk::Settings::get_default();
  settings->property_gtk_theme_name().signal_changed().connect([this] { followTheme(); });
  settings->property_gtk_application_prefer_dark_theme().signal_changed().connect(
      [this] { followTheme(); });
}

// Whether a theme is dark is seen by its text, whatever it is called.
void Look::followTheme() {
  Gdk::RGBA text("black");
  window_.get_style_context()->lookup_color("theme_fg_color", text);
  const bool isDark = luminance(text) > 0.5;
  sheet_->load_from_data(std::string(isDark ? kDarkColors : kLightColors) + kSheet);
}

void Look::setAccent(const std::optional<Gdk::RGBA>& accent) {
  const std::string color = accent ? hex(*accent) : "@theme_selected_bg_color";
  accent_->load_from_data("@define-color orvane_accent " + color + ";");
}

}  // namespace orvane::window
