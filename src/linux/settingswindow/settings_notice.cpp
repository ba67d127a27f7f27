#include "linux/settingswindow/settings_notice.h"

#include <iostream>
#include <utility>

#include "linux/gio/call.h"

namespace orvane::host {
namespace {

constexpr const char* kSentence = "The settings window is not installed.";
constexpr std::chrono::seconds kCallLimit{5};

// A window of which only the notification is ever seen. A further showing replaces it, so that
// notifications do not pile up.
class NoticeWindow final : public FormWindow {
 public:
  explicit NoticeWindow(GDBusConnection* connection)
      : connection_(connection ? gio::shared(connection) : nullptr) {}

  void center() override {}
  void setContentView(std::shared_ptr<FormView> view) override { view_ = std::move(view); }
  void show() override {}
  void makeKeyAndOrderFront() override {
    if (!connection_ || g_dbus_connection_is_closed(connection_.get())) return sayOnTerminal();
    const gio::Method notify{"org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                             "org.freedesktop.Notifications", "Notify"};
    gio::callStarting(connection_.get(), notify,
                      g_variant_new_parsed("('Orvane', %u, 'org.orvane.Orvane', %s, %s, @as [], "
                                           "{'desktop-entry': <'org.orvane.Orvane'>}, -1)",
                                           shownBefore_, title.c_str(), kSentence),
                      kCallLimit, calls_,
                      [this](GVariant* results, const gio::Failure&) { shown(results); });
  }

 private:
  void shown(GVariant* results) {
    if (!results || !g_variant_is_of_type(results, G_VARIANT_TYPE("(u)"))) return sayOnTerminal();
    g_variant_get(results, "(u)", &shownBefore_);
  }
  static void sayOnTerminal() { std::cerr << "orvane: " << kSentence << '\n'; }

  const gio::ObjectPtr<GDBusConnection> connection_;
  const gio::Cancellation calls_;
  std::shared_ptr<FormView> view_;
  guint32 shownBefore_ = 0;
};

class SettingsNotice final : public FormWindowServer {
 public:
  explicit SettingsNotice(GDBusConnection* connection) : connection_(connection) {}

  [[nodiscard]] std::shared_ptr<FormWindow> makeFormWindow(Rect, unsigned, NSBackingStoreType,
                                                           bool) override {
    return std::make_shared<NoticeWindow>(connection_);
  }

 private:
  GDBusConnection* const connection_;
};

}  // namespace

std::unique_ptr<FormWindowServer> makeSettingsNotice(GDBusConnection* connection) {
  return std::make_unique<SettingsNotice>(connection);
}

}  // namespace orvane::host
