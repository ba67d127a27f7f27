#include "linux/settingswindow/gtk/look.h"

#include <gtkmm/settings.h>
#include <gtkmm/stylecontext.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <string>

#include "linux/settingswindow/gtk/accent.h"

namespace orvane::window {
namespace {

constexpr unsigned kPriority = 600;  // of an application, above the theme and below the user's own

constexpr const char* kSheet = R"css(
.orvane-settings { background-color: @orvane_bg; }
.orvane-titleband { background: none; border: none; box-shadow: none; padding: 0; min-height: 0; }

.orvane-title { font-size: 1.45em; }
.orvane-semibold, .orvane-headline { font-weight: 600; }
.orvane-callout { font-size: .95em; }
.orvane-caption { font-size: .88em; }
.orvane-secondary { color: alpha(currentColor, .62); }
.orvane-accent { color: @orvane_accent; }

.orvane-tabs { background-color: alpha(currentColor, .07); border-radius: 10px; padding: 3px; }
.orvane-tabs button {
  background: none; border: none; box-shadow: none; border-radius: 8px; margin: 0 1px;
  padding: 4px 10px; min-height: 22px; font-weight: normal; color: alpha(currentColor, .78);
}
.orvane-tabs button:hover { background-color: alpha(currentColor, .06); }
.orvane-tabs button:checked {
  background-color: @orvane_raised; color: @theme_fg_color; font-weight: 600;
  box-shadow: 0 1px 2px alpha(black, .18), 0 0 0 1px alpha(black, .04);
}
.orvane-tabs button:checked .orvane-symbol { color: @orvane_accent; }

.orvane-pages { background-color: @orvane_panel; border-radius: 12px; }

.orvane-card {
  background-color: @orvane_card; border: 1px solid @orvane_line; border-radius: 10px;
}
.orvane-row { padding: 0 14px; }
.orvane-row:not(:first-child) { border-top: 1px solid @orvane_line; }
.orvane-row > label:disabled { color: alpha(@theme_fg_color, .55); }
.orvane-row scale { padding: 8px 0; }
.orvane-row dropdown > button, .orvane-row menubutton > button {
  padding-top: 1px; padding-bottom: 1px; min-height: 24px; border-radius: 7px;
}
.orvane-row menubutton > button { padding: 5px; min-height: 16px; }
.orvane-swatch { border-radius: 4px; }

.orvane-rows { background: none; color: inherit; }
.orvane-rows > row { background: none; padding: 0; border: none; }
.orvane-rows checkbutton { padding: 0; border-spacing: 8px; }

.orvane-small { padding: 1px 12px; min-height: 22px; border-radius: 7px; }
.orvane-done { padding: 3px 26px; min-height: 26px; border-radius: 8px; font-weight: 600; }

.orvane-settings switch {
  background: none; background-color: alpha(currentColor, .2); border: none; border-radius: 12px;
  padding: 2px; margin: 0;
}
.orvane-settings switch > slider {
  background: none; background-color: white; border: none; border-radius: 10px; margin: 0;
  min-width: 20px; min-height: 20px; box-shadow: 0 1px 2px alpha(black, .35);
}
.orvane-settings switch > image { color: transparent; }
.orvane-settings switch:checked { background-color: @orvane_accent; }
.orvane-settings switch:disabled { opacity: .5; }
.orvane-settings check:checked {
  background: none; background-color: @orvane_accent; border-color: @orvane_accent;
  color: @orvane_on_accent;
}
.orvane-settings scale highlight {
  background: none; background-color: @orvane_accent; border-color: @orvane_accent;
}
.orvane-settings scale slider {
  background: none; background-color: white; border: 1px solid alpha(black, .14); box-shadow: 0 1px 2px alpha(black, .25);
}
.orvane-settings button.suggested-action {
  background: none; background-color: @orvane_accent; border-color: @orvane_accent;
  color: @orvane_on_accent; box-shadow: none; text-shadow: none;
}
.orvane-settings button.suggested-action:hover { background-color: shade(@orvane_accent, 1.08); }
.orvane-settings button.suggested-action:active { background-color: shade(@orvane_accent, .9); }
.orvane-settings entry { border-radius: 8px; }
)css";

constexpr const char* kLightColors = R"css(
@define-color orvane_bg @theme_bg_color;
@define-color orvane_panel alpha(@theme_fg_color, .035);
@define-color orvane_card @theme_base_color;
@define-color orvane_raised @theme_base_color;
@define-color orvane_line alpha(@theme_fg_color, .09);
)css";
constexpr const char* kDarkColors = R"css(
@define-color orvane_bg shade(@theme_bg_color, .78);
@define-color orvane_panel alpha(@theme_fg_color, .035);
@define-color orvane_card mix(@theme_bg_color, white, .03);
@define-color orvane_raised mix(@theme_bg_color, white, .15);
@define-color orvane_line alpha(@theme_fg_color, .06);
)css";

SRGB srgbOf(const Gdk::RGBA& color) {
  return {color.get_red(), color.get_green(), color.get_blue(), 1};
}

std::string hex(const SRGB& color) {
  std::array<char, 8> text{};
  const auto part = [](double value) { return static_cast<unsigned>(std::lround(value * 255)); };
  std::snprintf(text.data(), text.size(), "#%02x%02x%02x", part(color.red), part(color.green),
                part(color.blue));
  return text.data();
}

SRGB themeColor(Gtk::Widget& widget, const char* name, const char* otherwise) {
  Gdk::RGBA color(otherwise);
  widget.get_style_context()->lookup_color(name, color);
  return srgbOf(color);
}

void add(const Glib::RefPtr<Gdk::Display>& display, const Glib::RefPtr<Gtk::CssProvider>& sheet) {
  Gtk::StyleContext::add_provider_for_display(display, sheet, kPriority);
}

}  // namespace

Look::Look(Gtk::Widget& window) : window_(window) {
  followTheme();
  add(window.get_display(), accent_);
  add(window.get_display(), sheet_);
  const auto settings = Gtk::Settings::get_default();
  settings->property_gtk_theme_name().signal_changed().connect(
      sigc::mem_fun(*this, &Look::followTheme));
  settings->property_gtk_application_prefer_dark_theme().signal_changed().connect(
      sigc::mem_fun(*this, &Look::followTheme));
}

void Look::setAccent(const std::optional<Gdk::RGBA>& accent) {
  named_ = accent;
  colorAccent();
}

// Whether a theme is dark is seen by its text, whatever it is called.
void Look::followTheme() {
  const SRGB text = themeColor(window_, "theme_fg_color", "black");
  const SRGB background = themeColor(window_, "theme_bg_color", "white");
  const bool isDark = contrast(text, {0, 0, 0, 1}) > contrast(background, {0, 0, 0, 1});
  sheet_->load_from_data(std::string(isDark ? kDarkColors : kLightColors) + kSheet);
  colorAccent();
}

void Look::colorAccent() {
  const SRGB wanted =
      named_ ? srgbOf(*named_) : themeColor(window_, "theme_selected_bg_color", "#3584e4");
  const SRGB accent = visibleOn(wanted, themeColor(window_, "theme_bg_color", "white"));
  accent_->load_from_data("@define-color orvane_accent " + hex(accent) +
                          ";\n@define-color orvane_on_accent " + hex(textOn(accent)) + ";");
}

}  // namespace orvane::window
