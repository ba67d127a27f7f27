#pragma once

#include <string>

#include "foundation/main_actor.h"
#include "linux/gio/handles.h"
#include "linux/gio/name_watch.h"

namespace orvane::host::statusitem {

// Makes an item known to the desktop's watcher, and to every new watcher: a panel that was
// restarted knows nothing of the items of before. Without a watcher nothing happens and nothing is
// asked. A watcher that refuses is asked once more a while later, since some take a moment to
// start.
class WatcherRegistration {
 public:
  // `itemName` is the bus name that the item answers under.
  WatcherRegistration(GDBusConnection* connection, MainActor& mainActor, std::string itemName);

 private:
  void registerWith(const std::string& owner, bool again);
  void refused(const std::string& owner);

  const gio::ObjectPtr<GDBusConnection> connection_;
  MainActor& mainActor_;
  const std::string itemName_;
  const gio::Cancellation calls_;
  Subscription retry_;
  const gio::NameWatch watch_;
};

}  // namespace orvane::host::statusitem
