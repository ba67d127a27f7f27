#include "linux/statusitem/watcher_registration.h"

#include <chrono>
#include <utility>

#include "linux/gio/call.h"

namespace orvane::host::statusitem {
namespace {

constexpr const char* kWatcher = "org.kde.StatusNotifierWatcher";
constexpr std::chrono::seconds kRetryDelay{2};
constexpr std::chrono::seconds kCallLimit{5};

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
  const gio::Method method{owner, "/StatusNotifierWatcher", kWatcher, "RegisterStatusNotifierItem"};
  gio::call(connection_.get(), method, g_variant_new("(s)", itemName_.c_str()), kCallLimit, calls_,
            [this, owner, again](GVariant*, const gio::Failure& failure) {
              if (failure && again) refused(owner);
            });
}

void WatcherRegistration::refused(const std::string& owner) {
  retry_ = mainActor_.after(kRetryDelay, [this, owner] { registerWith(owner, false); });
}

}  // namespace orvane::host::statusitem
