#include "linux/hotkey/portal_shortcut.h"

#include <chrono>
#include <utility>

#include "linux/gio/handles.h"
#include "linux/gio/name_watch.h"
#include "linux/gio/session_bus.h"
#include "linux/hotkey/key_names.h"
#include "linux/hotkey/portal_session.h"

namespace orvane::host::hotkey {
namespace {

constexpr const char* kPortal = "org.freedesktop.portal.Desktop";
constexpr std::chrono::milliseconds kConnectLimit{500};
constexpr std::chrono::seconds kShortLife{10};
constexpr int kMostShortLives = 3;

using Clock = std::chrono::steady_clock;

class PortalShortcut final : public HotKeySource {
 public:
  PortalShortcut(gio::ObjectPtr<GDBusConnection> connection, std::string trigger, Pressed pressed)
      : connection_(std::move(connection)),
        trigger_(std::move(trigger)),
        pressed_(std::move(pressed)),
        watch_(
            connection_.get(), kPortal,
            [this](const std::string& owner) {
              shortLives_ = 0;
              bind(owner);
            },
            [this] { session_.reset(); }) {
    startPortal();
  }

 private:
  void bind(const std::string& owner) {
    session_.reset();
    bound_ = Clock::now();
    session_ = std::make_unique<PortalSession>(
        connection_.get(),
        PortalSessionOptions{owner, trigger_, pressed_, [this, owner] { rebind(owner); }});
  }

  // A desktop that has slept or started its compositor anew closes sessions. One that closes all
  // that it grants does not want them.
  void rebind(const std::string& owner) {
    const bool wasShort = Clock::now() - bound_ < kShortLife;
    shortLives_ = wasShort ? shortLives_ + 1 : 0;
    if (shortLives_ > kMostShortLives) return session_.reset();
    bind(owner);
  }

  // The portal is started on demand by whoever calls it first; watching alone would not start it.
  // The answer does not matter: the name's coming is what counts.
  void startPortal() const {
    g_dbus_connection_call(connection_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                           "org.freedesktop.DBus", "StartServiceByName",
                           g_variant_new("(su)", kPortal, 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
                           nullptr, nullptr, nullptr);
  }

  const gio::ObjectPtr<GDBusConnection> connection_;
  const std::string trigger_;
  const Pressed pressed_;
  Clock::time_point bound_;
  int shortLives_ = 0;
  std::unique_ptr<PortalSession> session_;
  const gio::NameWatch watch_;
};

}  // namespace

std::unique_ptr<HotKeySource> makePortalShortcut(const std::string& busAddress,
                                                 Combination combination, Pressed pressed) {
  const auto trigger = shortcutTrigger(combination);
  if (busAddress.empty() || !trigger) return nullptr;
  auto connection = gio::connectToBus(busAddress, kConnectLimit);
  if (!connection) return nullptr;
  return std::make_unique<PortalShortcut>(std::move(connection), *trigger, std::move(pressed));
}

}  // namespace orvane::host::hotkey
