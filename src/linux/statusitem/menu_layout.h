#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "linux/gio/handles.h"
#include "platform/ns_menu.h"

namespace orvane::host::statusitem {

// A menu as com.canonical.dbusmenu puts it: a tree of numbered items with properties. The root is
// item 0; the menu's items are numbered from 1 in their order, and never otherwise, since a menu
// never changes.
//
// The key equivalents stay with us: hosts without keys of their own are known to crash on the
// property that would tell them.
class MenuLayout {
 public:
  explicit MenuLayout(NSMenu menu) : menu_(std::move(menu)) {}

  // The item of this number; null for the root and for numbers that nobody has.
  [[nodiscard]] const NSMenuItem* item(std::int32_t id) const;
  [[nodiscard]] bool has(std::int32_t id) const { return id == 0 || item(id); }

  // (ia{sv}av): the item, those of its properties that are asked for (all, if none is named), and
  // as deep as asked its children; -1 is all the way down.
  [[nodiscard]] gio::VariantPtr layout(std::int32_t id, std::int32_t depth,
                                       const std::vector<std::string>& properties) const;
  // a{sv}
  [[nodiscard]] gio::VariantPtr properties(std::int32_t id,
                                           const std::vector<std::string>& wanted) const;
  // Null where the item has no such property.
  [[nodiscard]] gio::VariantPtr property(std::int32_t id, const std::string& name) const;

 private:
  NSMenu menu_;
};

// A title as a label: an underscore would make the next letter a mnemonic unless it is doubled.
[[nodiscard]] std::string menuLabel(const std::string& title);

}  // namespace orvane::host::statusitem
