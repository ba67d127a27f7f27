#include "linux/settingswindow/gtk/desktop_preference.h"

#include <giomm/dbusproxy.h>
#include <gtkmm/settings.h>

#include <cstdint>

namespace orvane::window {
namespace {

constexpr const char* kPortal = "org.freedesktop.portal.Desktop";
constexpr const char* kPath = "/org/freedesktop/portal/desktop";
constexpr const char* kInterface = "org.freedesktop.portal.Settings";
constexpr const char* kAppearance = "org.freedesktop.appearance";
constexpr const char* kColorScheme = "color-scheme";
constexpr const char* kAccentColor = "accent-color";
constexpr std::uint32_t kNoPreference = 0;
constexpr std::uint32_t kPreferDark = 1;

// `Read` wraps its answer in a variant twice.
Glib::VariantBase unwrapped(Glib::VariantBase value) {
  while (value.is_of_type(Glib::VARIANT_TYPE_VARIANT)) {
    value = Glib::VariantBase::cast_dynamic<Glib::Variant<Glib::VariantBase>>(value).get();
  }
  return value;
}

// Components outside of 0…1 stand for none.
std::optional<Gdk::RGBA> colorIn(const Glib::VariantBase& value) {
  using Components = std::tuple<double, double, double>;
  if (!value.is_of_type(Glib::VariantType("(ddd)"))) return std::nullopt;
  const auto [red, green, blue] =
      Glib::VariantBase::cast_dynamic<Glib::Variant<Components>>(value).get();
  for (const double part : {red, green, blue}) {
    if (!(part >= 0 && part <= 1)) return std::nullopt;
  }
  return Gdk::RGBA(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue));
}

}  // namespace

DesktopPreference::DesktopPreference(AccentChanged accentChanged)
    : accentChanged_(std::move(accentChanged)) {
  Gio::DBus::Proxy::create_for_bus(
      Gio::DBus::BusType::SESSION, kPortal, kPath, kInterface,
      [this](const Glib::RefPtr<Gio::AsyncResult>& result) { connected(result); }, cancellable_, {},
      Gio::DBus::ProxyFlags::DO_NOT_LOAD_PROPERTIES);
}

DesktopPreference::~DesktopPreference() { cancellable_->cancel(); }

// Having been cancelled, it is not there any more.
void DesktopPreference::connected(const Glib::RefPtr<Gio::AsyncResult>& result) {
  Glib::RefPtr<Gio::DBus::Proxy> portal;
  try {
    portal = Gio::DBus::Proxy::create_for_bus_finish(result);
  } catch (const Glib::Error&) {
    return;
  }
  portal_ = std::move(portal);
  portal_->signal_signal().connect([this](const Glib::ustring&, const Glib::ustring& name,
                                          const Glib::VariantContainerBase& values) {
    if (name != "SettingChanged" || !values.is_of_type(Glib::VariantType("(ssv)"))) return;
    Glib::Variant<Glib::ustring> space;
    Glib::Variant<Glib::ustring> key;
    Glib::VariantBase value;
    values.get_child(space, 0);
    values.get_child(key, 1);
    values.get_child(value, 2);
    if (space.get() == kAppearance) take(key.get(), value);
  });
  ask(kColorScheme);
  ask(kAccentColor);
}

void DesktopPreference::ask(const Glib::ustring& key) {
  const auto parameters =
      Glib::Variant<std::tuple<Glib::ustring, Glib::ustring>>::create({kAppearance, key});
  portal_->call(
      "Read",
      [this, key](const Glib::RefPtr<Gio::AsyncResult>& result) {
        try {
          auto answer = portal_->call_finish(result);
          if (answer.is_of_type(Glib::VariantType("(v)"))) take(key, answer.get_child(0));
        } catch (const Glib::Error&) {
          return;  // there is no such setting, or nobody who knows
        }
      },
      cancellable_, parameters);
}

void DesktopPreference::take(const Glib::ustring& key, const Glib::VariantBase& value) {
  if (key == kColorScheme) takeColorScheme(unwrapped(value));
  if (key == kAccentColor) accentChanged_(colorIn(unwrapped(value)));
}

void DesktopPreference::takeColorScheme(const Glib::VariantBase& value) {
  if (!value.is_of_type(Glib::VARIANT_TYPE_UINT32)) return;
  const auto scheme = Glib::VariantBase::cast_dynamic<Glib::Variant<guint32>>(value).get();
  auto preferDark = Gtk::Settings::get_default()->property_gtk_application_prefer_dark_theme();
  if (scheme == kNoPreference) {
    preferDark.reset_value();
  } else {
    preferDark = scheme == kPreferDark;
  }
}

}  // namespace orvane::window
