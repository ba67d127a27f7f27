#include "linux/statusitem/menu_layout.h"

#include <algorithm>
#include <map>
#include <utility>

namespace orvane::host::statusitem {
namespace {

using gio::owned;
using gio::VariantPtr;
using Properties = std::map<std::string, VariantPtr>;

VariantPtr text(const std::string& value) { return owned(g_variant_new_string(value.c_str())); }

Properties rootProperties() {
  Properties all;
  all.emplace("children-display", text("submenu"));
  return all;
}

Properties itemProperties(const NSMenuItem& item) {
  Properties all;
  all.emplace("enabled", owned(g_variant_new_boolean(!item.isSeparatorItem)));
  all.emplace("visible", owned(g_variant_new_boolean(TRUE)));
  if (item.isSeparatorItem) {
    all.emplace("type", text("separator"));
  } else {
    all.emplace("label", text(menuLabel(item.title)));
  }
  return all;
}

bool isWanted(const std::vector<std::string>& wanted, const std::string& name) {
  return wanted.empty() || std::find(wanted.begin(), wanted.end(), name) != wanted.end();
}

}  // namespace

std::string menuLabel(const std::string& title) {
  std::string label;
  for (const char letter : title) label.append(letter == '_' ? 2 : 1, letter);
  return label;
}

const NSMenuItem* MenuLayout::item(std::int32_t id) const {
  const auto index = static_cast<std::size_t>(id) - 1;
  return id > 0 && index < menu_.itemArray.size() ? &menu_.itemArray[index] : nullptr;
}

VariantPtr MenuLayout::properties(std::int32_t id, const std::vector<std::string>& wanted) const {
  const auto* known = item(id);
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
  for (const auto& [name, value] : known ? itemProperties(*known) : rootProperties()) {
    if (isWanted(wanted, name)) g_variant_builder_add(&builder, "{sv}", name.c_str(), value.get());
  }
  return owned(g_variant_builder_end(&builder));
}

VariantPtr MenuLayout::property(std::int32_t id, const std::string& name) const {
  if (!has(id)) return nullptr;
  const auto* known = item(id);
  auto all = known ? itemProperties(*known) : rootProperties();
  const auto found = all.find(name);
  return found == all.end() ? nullptr : std::move(found->second);
}

VariantPtr MenuLayout::layout(std::int32_t id, std::int32_t depth,
                              const std::vector<std::string>& wanted) const {
  GVariantBuilder children;
  g_variant_builder_init(&children, G_VARIANT_TYPE("av"));
  if (id == 0 && depth != 0) {
    for (std::size_t index = 0; index < menu_.itemArray.size(); ++index) {
      const auto child = layout(static_cast<std::int32_t>(index) + 1, depth - 1, wanted);
      g_variant_builder_add(&children, "v", child.get());
    }
  }
  return owned(g_variant_new("(i@a{sv}@av)", id, properties(id, wanted).get(),
                             g_variant_builder_end(&children)));
}

}  // namespace orvane::host::statusitem
