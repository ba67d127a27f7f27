#pragma once

#include <gdkmm/rgba.h>
#include <giomm/dbusproxy.h>

#include <functional>
#include <optional>

namespace orvane::window {

// What the desktop's settings say of applications' looks (org.freedesktop.portal.Settings,
// namespace org.freedesktop.appearance), now and later. Where nobody answers, the toolkit's own
// settings hold. Nothing waits for the answer.
class DesktopPreference {
 public:
  using AccentChanged = std::function<void(const std::optional<Gdk::RGBA>&)>;

  explicit DesktopPreference(AccentChanged accentChanged);
  ~DesktopPreference();
  DesktopPreference(const DesktopPreference&) = delete;
  DesktopPreference& operator=(const DesktopPreference&) = delete;

 private:
  void connected(const Glib::RefPtr<Gio::AsyncResult>& result);
  void ask(const Glib::ustring& key);
  void take(const Glib::ustring& key, const Glib::VariantBase& value);
  static void takeColorScheme(const Glib::VariantBase& value);

  const AccentChanged accentChanged_;
  const Glib::RefPtr<Gio::Cancellable> cancellable_ = Gio::Cancellable::create();
  Glib::RefPtr<Gio::DBus::Proxy> portal_;
};

}  // namespace orvane::window
