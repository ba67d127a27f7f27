#include "linux/statusitem/menu_export.h"

#include <map>
#include <utility>
#include <vector>

namespace orvane::host::statusitem {
namespace {

using gio::CallReply;
using gio::owned;
using gio::VariantPtr;

// The menu never changes, so it has one revision for good.
constexpr guint32 kRevision = 1;

constexpr const char* kDescription = R"xml(
<node>
  <interface name="com.canonical.dbusmenu">
    <property name="Version" type="u" access="read"/>
    <property name="TextDirection" type="s" access="read"/>
    <property name="Status" type="s" access="read"/>
    <property name="IconThemePath" type="as" access="read"/>
    <method name="GetLayout">
      <arg name="parentId" type="i" direction="in"/>
      <arg name="recursionDepth" type="i" direction="in"/>
      <arg name="propertyNames" type="as" direction="in"/>
      <arg name="revision" type="u" direction="out"/>
      <arg name="layout" type="(ia{sv}av)" direction="out"/>
    </method>
    <method name="GetGroupProperties">
      <arg name="ids" type="ai" direction="in"/>
      <arg name="propertyNames" type="as" direction="in"/>
      <arg name="properties" type="a(ia{sv})" direction="out"/>
    </method>
    <method name="GetProperty">
      <arg name="id" type="i" direction="in"/>
      <arg name="name" type="s" direction="in"/>
      <arg name="value" type="v" direction="out"/>
    </method>
    <method name="Event">
      <arg name="id" type="i" direction="in"/>
      <arg name="eventId" type="s" direction="in"/>
      <arg name="data" type="v" direction="in"/>
      <arg name="timestamp" type="u" direction="in"/>
    </method>
    <method name="EventGroup">
      <arg name="events" type="a(isvu)" direction="in"/>
      <arg name="idErrors" type="ai" direction="out"/>
    </method>
    <method name="AboutToShow">
      <arg name="id" type="i" direction="in"/>
      <arg name="needUpdate" type="b" direction="out"/>
    </method>
    <method name="AboutToShowGroup">
      <arg name="ids" type="ai" direction="in"/>
      <arg name="updatesNeeded" type="ai" direction="out"/>
      <arg name="idErrors" type="ai" direction="out"/>
    </method>
    <signal name="ItemsPropertiesUpdated">
      <arg name="updatedProps" type="a(ia{sv})"/>
      <arg name="removedProps" type="a(ias)"/>
    </signal>
    <signal name="LayoutUpdated">
      <arg name="revision" type="u"/>
      <arg name="parent" type="i"/>
    </signal>
    <signal name="ItemActivationRequested">
      <arg name="id" type="i"/>
      <arg name="timestamp" type="u"/>
    </signal>
  </interface>
</node>)xml";

VariantPtr property(const std::string& name) {
  if (name == "Version") return owned(g_variant_new_uint32(3));
  if (name == "TextDirection") return owned(g_variant_new_string("ltr"));
  if (name == "Status") return owned(g_variant_new_string("normal"));
  if (name == "IconThemePath") return owned(g_variant_new_strv(nullptr, 0));
  return nullptr;
}

VariantPtr child(GVariant* tuple, gsize index) {
  return VariantPtr(g_variant_get_child_value(tuple, index));
}
std::int32_t number(GVariant* tuple, gsize index) {
  return g_variant_get_int32(child(tuple, index).get());
}
std::string text(GVariant* tuple, gsize index) {
  return g_variant_get_string(child(tuple, index).get(), nullptr);
}

std::vector<std::string> texts(GVariant* array) {
  std::vector<std::string> all;
  for (gsize index = 0; index < g_variant_n_children(array); ++index) {
    all.push_back(text(array, index));
  }
  return all;
}

VariantPtr numbers(const std::vector<std::int32_t>& all) {
  return owned(g_variant_new_fixed_array(G_VARIANT_TYPE_INT32, all.data(), all.size(),
                                         sizeof(std::int32_t)));
}

gio::CallError noItem(std::int32_t id) {
  return gio::invalidArguments("There is no item " + std::to_string(id) + ".");
}

}  // namespace

MenuExport::MenuExport(GDBusConnection* connection, MainActor& mainActor, NSMenu menu,
                       Choose choose)
    : mainActor_(mainActor),
      layout_(std::move(menu)),
      choose_(std::move(choose)),
      object_(connection, kMenuPath, kDescription,
              {[this](const std::string& method, GVariant* arguments) {
                 return call(method, arguments);
               },
               &property}) {}

CallReply MenuExport::call(const std::string& method, GVariant* arguments) const {
  using Method = CallReply (MenuExport::*)(GVariant*) const;
  static const std::map<std::string, Method, std::less<>> methods = {
      {"GetLayout", &MenuExport::getLayout},
      {"GetGroupProperties", &MenuExport::getGroupProperties},
      {"GetProperty", &MenuExport::getProperty},
      {"Event", &MenuExport::event},
      {"EventGroup", &MenuExport::eventGroup},
      {"AboutToShow", &MenuExport::aboutToShow},
      {"AboutToShowGroup", &MenuExport::aboutToShowGroup}};
  const auto found = methods.find(method);
  if (found == methods.end()) return gio::unknownMethod("There is no method " + method + ".");
  return (this->*found->second)(arguments);
}

CallReply MenuExport::getLayout(GVariant* arguments) const {
  const auto id = number(arguments, 0);
  if (!layout_.has(id)) return noItem(id);
  const auto tree = layout_.layout(id, number(arguments, 1), texts(child(arguments, 2).get()));
  return owned(g_variant_new("(u@(ia{sv}av))", kRevision, tree.get()));
}

// No numbers mean all items; numbers that nobody has are passed over.
CallReply MenuExport::getGroupProperties(GVariant* arguments) const {
  const auto ids = child(arguments, 0);
  const auto wanted = texts(child(arguments, 1).get());
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("a(ia{sv})"));
  const auto add = [&](std::int32_t id) {
    g_variant_builder_add(&builder, "(i@a{sv})", id, layout_.properties(id, wanted).get());
  };
  for (gsize index = 0; index < g_variant_n_children(ids.get()); ++index) {
    if (const auto id = number(ids.get(), index); layout_.has(id)) add(id);
  }
  if (g_variant_n_children(ids.get()) == 0) {
    for (std::int32_t id = 0; layout_.has(id); ++id) add(id);
  }
  return owned(g_variant_new("(a(ia{sv}))", &builder));
}

CallReply MenuExport::getProperty(GVariant* arguments) const {
  const auto value = layout_.property(number(arguments, 0), text(arguments, 1));
  if (!value) return gio::invalidArguments("There is no such property.");
  return owned(g_variant_new("(v)", value.get()));
}

CallReply MenuExport::event(GVariant* arguments) const {
  const auto id = number(arguments, 0);
  if (!happened(id, text(arguments, 1))) return noItem(id);
  return VariantPtr();
}

CallReply MenuExport::eventGroup(GVariant* arguments) const {
  const auto events = child(arguments, 0);
  std::vector<std::int32_t> unknown;
  for (gsize index = 0; index < g_variant_n_children(events.get()); ++index) {
    const auto each = child(events.get(), index);
    const auto id = number(each.get(), 0);
    if (!happened(id, text(each.get(), 1))) unknown.push_back(id);
  }
  return owned(g_variant_new("(@ai)", numbers(unknown).get()));
}

// Nothing changes when a menu is shown.
CallReply MenuExport::aboutToShow(GVariant* arguments) const {
  const auto id = number(arguments, 0);
  if (!layout_.has(id)) return noItem(id);
  return owned(g_variant_new("(b)", FALSE));
}

CallReply MenuExport::aboutToShowGroup(GVariant* arguments) const {
  const auto ids = child(arguments, 0);
  std::vector<std::int32_t> unknown;
  for (gsize index = 0; index < g_variant_n_children(ids.get()); ++index) {
    if (const auto id = number(ids.get(), index); !layout_.has(id)) unknown.push_back(id);
  }
  return owned(g_variant_new("(@ai@ai)", numbers({}).get(), numbers(unknown).get()));
}

bool MenuExport::happened(std::int32_t id, const std::string& event) const {
  if (const auto* item = layout_.item(id); item && event == "clicked") {
    mainActor_.post([choose = choose_, chosen = *item] { choose(chosen); });
  }
  return layout_.has(id);
}

}  // namespace orvane::host::statusitem
