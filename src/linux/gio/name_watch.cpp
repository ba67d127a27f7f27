#include "linux/gio/name_watch.h"

#include <utility>

namespace orvane::host::gio {

struct NameWatch::Observers {
  std::function<void(const std::string&)> appeared;
  std::function<void()> vanished;
};

// The library may still deliver what it had queued when the watch ends: the observers are empty by
// then, and live as long as it needs them.
NameWatch::NameWatch(GDBusConnection* connection, const std::string& name,
                     std::function<void(const std::string&)> appeared,
                     std::function<void()> vanished)
    : observers_(std::make_shared<Observers>(Observers{std::move(appeared), std::move(vanished)})) {
  using Shared = std::shared_ptr<Observers>;
  const GBusNameAppearedCallback onAppeared = [](GDBusConnection*, const char*, const char* owner,
                                                 gpointer data) {
    const Shared observers = *static_cast<Shared*>(data);
    if (observers->appeared) observers->appeared(owner);
  };
  const GBusNameVanishedCallback onVanished = [](GDBusConnection*, const char*, gpointer data) {
    const Shared observers = *static_cast<Shared*>(data);
    if (observers->vanished) observers->vanished();
  };
  const GDestroyNotify drop = [](gpointer data) { delete static_cast<Shared*>(data); };
  watch_ = g_bus_watch_name_on_connection(connection, name.c_str(), G_BUS_NAME_WATCHER_FLAGS_NONE,
                                          onAppeared, onVanished, new Shared(observers_), drop);
}

NameWatch::~NameWatch() {
  *observers_ = {};
  g_bus_unwatch_name(watch_);
}

}  // namespace orvane::host::gio
