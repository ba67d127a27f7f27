#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/main_actor.h"
#include "linux/gio/exported_object.h"
#include "linux/statusitem/menu_export.h"
#include "linux/statusitem/status_icon.h"
#include "linux/statusitem/watcher_registration.h"

namespace orvane::host::statusitem {

// What an item shows. Texts may hold anything; hosts read them as markup, so they are escaped.
struct ItemFace {
  std::string themedIcon;  // a name in the icon theme; empty: none
  std::vector<IconPixels> pixels;
  std::string description;

  friend bool operator==(const ItemFace&, const ItemFace&) = default;
};

// Told what lets a window take the focus.
using TakeActivationToken = std::function<void(const std::string& token)>;

// One org.kde.StatusNotifierItem with its menu on the bus, under a name of its own that goes with
// it. Its face and menu are fixed.
class StatusNotifierItem {
 public:
  // `takeToken` is called just before a choice of the menu is carried out, with an empty token
  // where the host gave none for it. May be null.
  StatusNotifierItem(GDBusConnection* connection, MainActor& mainActor, ItemFace face, NSMenu menu,
                     TakeActivationToken takeToken);
  StatusNotifierItem(const StatusNotifierItem&) = delete;
  StatusNotifierItem& operator=(const StatusNotifierItem&) = delete;
  ~StatusNotifierItem();

 private:
  [[nodiscard]] gio::CallReply call(const std::string& method, GVariant* arguments) const;
  [[nodiscard]] gio::VariantPtr property(const std::string& name) const;

  const gio::ObjectPtr<GDBusConnection> connection_;
  const ItemFace face_;
  const std::shared_ptr<std::string> token_ = std::make_shared<std::string>();
  const MenuExport menu_;
  const gio::ExportedObject object_;
  const std::string name_;
  guint ownership_ = 0;
  std::optional<WatcherRegistration> registration_;
};

}  // namespace orvane::host::statusitem
