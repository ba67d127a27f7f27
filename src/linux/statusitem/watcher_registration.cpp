#include "linux/statusitem/watcher_registration.h"

#include <chrono>
#include <utility>

namespace orvane::host::statusitem {
namespace {

constexpr const char* kWatcher = "org.kde.StatusNotifierWatcher";
constexpr std::chrono::seconds kRetryDelay{2};
constexpr int kCallLimit = 5000;  // milliseconds

// One registration under way. It refers to its owner only as long as the call is not cancelled.
struct Attempt {
  std::function<void()> refused;
};

void finish(GObject* connection, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Attempt> attempt(static_cast<Attempt*>(data));
  gio::Failure failure;
  const gio::VariantPtr reply(g_dbus_connection_call_finish(
      reinterpret_cast<GDBusConnection*>(connection), result, failure.out()));
  if (failure && !failure.is(G_IO_ERROR, G_IO_ERROR_CANCELLED) && attempt->refused) {
    attempt->refused();
  }
}

}  // namespace

WatcherRegistration::WatcherRegistration(GDBusConnection* connection, MainActor& mainActor,
                                         std::string itemName)
    : connection_(gio::shared(connection)),
      mainActor_(mainActor),
      itemName_(std::move(itemName)),
      watch_(
          connection, kWatcher, [this](const std::string& owner) { registerWith(owner, true); },
          [this] { retry_ = {}; }) {}

void WatcherRegistration::registerWith(const std::string& owner, bool again) {
  retry_ = {};
  auto attempt = std::make_unique<Attempt>();
  if (again) attempt->refused = [this, owner] { refused(owner); };
  g_dbus_connection_call(connection_.get(), owner.c_str(), "/StatusNotifierWatcher", kWatcher,
                         "RegisterStatusNotifierItem", g_variant_new("(s)", itemName_.c_str()),
                         nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, kCallLimit, calls_.get(),
                         &finish, attempt.release());
}

void WatcherRegistration::refused(const std::string& owner) {
  retry_ = mainActor_.after(kRetryDelay, [this, owner] { registerWith(owner, false); });
}

}  // namespace orvane::host::statusitem
