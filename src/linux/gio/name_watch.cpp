#include "linux/gio/name_watch.h"

#include <utility>

namespace orvane::host::gio {

NameWatch::NameWatch(GDBusConnection* connection, const std::string& name,
                     std::function<void(const std::string&)> appeared,
                     std::function<void()> vanished)
    : appeared_(std::move(appeared)), vanished_(std::move(vanished)) {
  const GBusNameAppearedCallback onAppeared = [](GDBusConnection*, const char*, const char* owner,
                                                 gpointer self) {
    const auto call = static_cast<NameWatch*>(self)->appeared_;
    if (call) call(owner);
  };
  const GBusNameVanishedCallback onVanished = [](GDBusConnection*, const char*, gpointer self) {
    const auto call = static_cast<NameWatch*>(self)->vanished_;
    if (call) call();
  };
  watch_ = g_bus_watch_name_on_connection(connection, name.c_str(), G_BUS_NAME_WATCHER_FLAGS_NONE,
                                          onAppeared, onVanished, this, nullptr);
}

// The library calls nobody of a watch that has ended, also not for what it had queued before.
NameWatch::~NameWatch() { g_bus_unwatch_name(watch_); }

}  // namespace orvane::host::gio
