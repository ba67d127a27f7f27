#include "linux/statusitem/status_notifier_item.h"

#include <unistd.h>

#include <functional>
#include <map>
#include <utility>

namespace orvane::host::statusitem {
namespace {

using gio::owned;
using gio::VariantPtr;

constexpr const char* kItemPath = "/StatusNotifierItem";

// There is no Activate: the item is a menu, and hosts that ask for the other anyway open the menu
// when they hear that there is no such method.
constexpr const char* kDescription = R"xml(
<node>
  <interface name="org.kde.StatusNotifierItem">
    <property name="Category" type="s" access="read"/>
    <property name="Id" type="s" access="read"/>
    <property name="Title" type="s" access="read"/>
    <property name="Status" type="s" access="read"/>
    <property name="WindowId" type="i" access="read"/>
    <property name="IconThemePath" type="s" access="read"/>
    <property name="IconName" type="s" access="read"/>
    <property name="IconPixmap" type="a(iiay)" access="read"/>
    <property name="IconAccessibleDesc" type="s" access="read"/>
    <property name="OverlayIconName" type="s" access="read"/>
    <property name="OverlayIconPixmap" type="a(iiay)" access="read"/>
    <property name="AttentionIconName" type="s" access="read"/>
    <property name="AttentionIconPixmap" type="a(iiay)" access="read"/>
    <property name="AttentionMovieName" type="s" access="read"/>
    <property name="ToolTip" type="(sa(iiay)ss)" access="read"/>
    <property name="ItemIsMenu" type="b" access="read"/>
    <property name="Menu" type="o" access="read"/>
    <method name="ProvideXdgActivationToken">
      <arg name="token" type="s" direction="in"/>
    </method>
    <signal name="NewTitle"/>
    <signal name="NewIcon"/>
    <signal name="NewAttentionIcon"/>
    <signal name="NewOverlayIcon"/>
    <signal name="NewToolTip"/>
    <signal name="NewStatus"><arg name="status" type="s"/></signal>
  </interface>
</node>)xml";

// The name that hosts expect; a connection has one item, since the item's path is fixed too.
std::string itemName() { return "org.kde.StatusNotifierItem-" + std::to_string(getpid()) + "-1"; }

VariantPtr text(const std::string& value) { return owned(g_variant_new_string(value.c_str())); }

VariantPtr markup(const std::string& value) {
  const gio::TextPtr escaped(g_markup_escape_text(value.c_str(), -1));
  return text(escaped.get());
}

VariantPtr pixmaps(const std::vector<IconPixels>& all) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("a(iiay)"));
  for (const auto& icon : all) {
    auto* bytes = g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, icon.argb.data(), icon.argb.size(),
                                            sizeof(std::uint8_t));
    g_variant_builder_add(&builder, "(ii@ay)", icon.side, icon.side, bytes);
  }
  return owned(g_variant_builder_end(&builder));
}

MenuExport::Choose choosing(std::shared_ptr<std::string> token, TakeActivationToken takeToken) {
  return [token = std::move(token), takeToken = std::move(takeToken)](const NSMenuItem& item) {
    if (takeToken) takeToken(std::exchange(*token, {}));
    item.choose();
  };
}

VariantPtr toolTip(const std::string& title) {
  return owned(g_variant_new("(s@a(iiay)@ss)", "", pixmaps({}).get(), markup(title).get(), ""));
}

}  // namespace

StatusNotifierItem::StatusNotifierItem(GDBusConnection* connection, MainActor& mainActor,
                                       ItemFace face, NSMenu menu, TakeActivationToken takeToken)
    : connection_(gio::shared(connection)),
      face_(std::move(face)),
      menu_(connection, mainActor, std::move(menu), choosing(token_, std::move(takeToken))),
      object_(connection, kItemPath, kDescription,
              {[this](const std::string& method, GVariant* arguments) {
                 return call(method, arguments);
               },
               [this](const std::string& name) { return property(name); }}),
      name_(itemName()) {
  ownership_ = g_bus_own_name_on_connection(connection, name_.c_str(), G_BUS_NAME_OWNER_FLAGS_NONE,
                                            nullptr, nullptr, nullptr, nullptr);
  registration_.emplace(connection, mainActor, name_);
}

StatusNotifierItem::~StatusNotifierItem() { g_bus_unown_name(ownership_); }

// The only method that there is: hosts tell the token for what they are about to say was chosen.
gio::CallReply StatusNotifierItem::call(const std::string&, GVariant* arguments) const {
  const char* token = nullptr;
  g_variant_get(arguments, "(&s)", &token);
  *token_ = token;
  return VariantPtr();
}

VariantPtr StatusNotifierItem::property(const std::string& name) const {
  using Value = std::function<VariantPtr(const ItemFace&)>;
  static const std::map<std::string, Value, std::less<>> values = {
      {"Category", [](const auto&) { return text("ApplicationStatus"); }},
      {"Id", [](const auto&) { return text("org.orvane.Orvane"); }},
      {"Title", [](const auto& face) { return markup(face.description); }},
      {"Status", [](const auto&) { return text("Active"); }},
      {"WindowId", [](const auto&) { return owned(g_variant_new_int32(0)); }},
      {"IconThemePath", [](const auto&) { return text(""); }},
      {"IconName", [](const auto& face) { return text(face.themedIcon); }},
      {"IconPixmap", [](const auto& face) { return pixmaps(face.pixels); }},
      {"IconAccessibleDesc", [](const auto& face) { return text(face.description); }},
      {"OverlayIconName", [](const auto&) { return text(""); }},
      {"OverlayIconPixmap", [](const auto&) { return pixmaps({}); }},
      {"AttentionIconName", [](const auto&) { return text(""); }},
      {"AttentionIconPixmap", [](const auto&) { return pixmaps({}); }},
      {"AttentionMovieName", [](const auto&) { return text(""); }},
      {"ToolTip", [](const auto& face) { return toolTip(face.description); }},
      {"ItemIsMenu", [](const auto&) { return owned(g_variant_new_boolean(TRUE)); }},
      {"Menu", [](const auto&) { return owned(g_variant_new_object_path(kMenuPath)); }}};
  const auto found = values.find(name);
  return found == values.end() ? nullptr : found->second(face_);
}

}  // namespace orvane::host::statusitem
