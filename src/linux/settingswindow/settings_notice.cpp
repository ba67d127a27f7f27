#include "linux/settingswindow/settings_notice.h"

#include <chrono>
#include <iostream>

#include "linux/gio/call.h"

namespace orvane::host {
namespace {

constexpr std::chrono::seconds kCallLimit{5};

void sayOnTerminal(const std::string& sentence) { std::cerr << "orvane: " << sentence << '\n'; }

class DesktopNotification final : public SettingsNotice {
 public:
  explicit DesktopNotification(GDBusConnection* connection)
      : connection_(connection ? gio::shared(connection) : nullptr) {}

  void say(const std::string& title, const std::string& sentence) override {
    if (!connection_ || g_dbus_connection_is_closed(connection_.get())) {
      return sayOnTerminal(sentence);
    }
    const gio::Method notify{"org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                             "org.freedesktop.Notifications", "Notify"};
    gio::callStarting(connection_.get(), notify,
                      g_variant_new_parsed("('Orvane', %u, 'org.orvane.Orvane', %s, %s, @as [], "
                                           "{'desktop-entry': <'org.orvane.Orvane'>}, -1)",
                                           shownBefore_, title.c_str(), sentence.c_str()),
                      kCallLimit, calls_, [this, sentence](GVariant* results, const gio::Failure&) {
                        shown(results, sentence);
                      });
  }

 private:
  void shown(GVariant* results, const std::string& sentence) {
    if (!results || !g_variant_is_of_type(results, G_VARIANT_TYPE("(u)"))) {
      return sayOnTerminal(sentence);
    }
    g_variant_get(results, "(u)", &shownBefore_);
  }

  const gio::ObjectPtr<GDBusConnection> connection_;
  const gio::Cancellation calls_;
  guint32 shownBefore_ = 0;
};

}  // namespace

std::unique_ptr<SettingsNotice> makeSettingsNotice(GDBusConnection* connection) {
  return std::make_unique<DesktopNotification>(connection);
}

}  // namespace orvane::host
