#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "foundation/main_actor.h"
#include "linux/gio/exported_object.h"
#include "linux/statusitem/menu_layout.h"

namespace orvane::host::statusitem {

inline constexpr const char* kMenuPath = "/MenuBar";

// A menu on the bus, version 3 of com.canonical.dbusmenu.
class MenuExport {
 public:
  using Choose = std::function<void(const NSMenuItem&)>;

  // `choose` is called for an item that was picked, in a turn of its own, which may come when this
  // is gone.
  MenuExport(GDBusConnection* connection, MainActor& mainActor, NSMenu menu, Choose choose);

 private:
  [[nodiscard]] gio::CallReply call(const std::string& method, GVariant* arguments) const;
  [[nodiscard]] gio::CallReply getLayout(GVariant* arguments) const;
  [[nodiscard]] gio::CallReply getGroupProperties(GVariant* arguments) const;
  [[nodiscard]] gio::CallReply getProperty(GVariant* arguments) const;
  [[nodiscard]] gio::CallReply event(GVariant* arguments) const;
  [[nodiscard]] gio::CallReply eventGroup(GVariant* arguments) const;
  [[nodiscard]] gio::CallReply aboutToShow(GVariant* arguments) const;
  [[nodiscard]] gio::CallReply aboutToShowGroup(GVariant* arguments) const;
  // Whether there is such an item.
  [[nodiscard]] bool happened(std::int32_t id, const std::string& event) const;

  MainActor& mainActor_;
  const MenuLayout layout_;
  const Choose choose_;
  const gio::ExportedObject object_;
};

}  // namespace orvane::host::statusitem
