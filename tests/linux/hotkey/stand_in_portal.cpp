#include "stand_in_portal.h"

#include <algorithm>
#include <utility>

namespace orvane::host::hotkey {
namespace {

constexpr const char* kPath = "/org/freedesktop/portal/desktop";

constexpr const char* kRegistry = R"xml(
<node><interface name="org.freedesktop.host.portal.Registry">
  <method name="Register">
    <arg type="s" direction="in"/><arg type="a{sv}" direction="in"/>
  </method>
</interface></node>)xml";

constexpr const char* kShortcuts = R"xml(
<node><interface name="org.freedesktop.portal.GlobalShortcuts">
  <method name="CreateSession">
    <arg type="a{sv}" direction="in"/><arg type="o" direction="out"/>
  </method>
  <method name="BindShortcuts">
    <arg type="o" direction="in"/><arg type="a(sa{sv})" direction="in"/>
    <arg type="s" direction="in"/><arg type="a{sv}" direction="in"/>
    <arg type="o" direction="out"/>
  </method>
</interface></node>)xml";

std::string optionOf(GVariant* arguments, const char* key) {
  const gio::VariantPtr options(
      g_variant_get_child_value(arguments, g_variant_n_children(arguments) - 1));
  const char* text = "";
  g_variant_lookup(options.get(), key, "&s", &text);
  return text;
}

std::string pathElement(std::string uniqueName) {
  uniqueName.erase(0, 1);
  std::replace(uniqueName.begin(), uniqueName.end(), '.', '_');
  return uniqueName;
}

}  // namespace

StandInPortal::StandInPortal(const gio::PrivateBus& bus, PortalManners manners)
    : manners_(std::move(manners)), connection_(bus.connect()) {
  if (manners_.hasRegistry) add(kRegistry);
  if (manners_.hasShortcuts) add(kShortcuts);
  name_ =
      g_bus_own_name_on_connection(connection_.get(), "org.freedesktop.portal.Desktop",
                                   G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr, nullptr, nullptr);
}

StandInPortal::~StandInPortal() {
  g_bus_unown_name(name_);
  g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
}

void StandInPortal::add(const char* description) {
  static const GDBusInterfaceVTable entries = {&onCall, nullptr, nullptr, {}};
  const gio::NodeInfoPtr node(g_dbus_node_info_new_for_xml(description, nullptr));
  g_dbus_connection_register_object(connection_.get(), kPath, node->interfaces[0], &entries, this,
                                    nullptr, nullptr);
}

std::size_t StandInPortal::count(const std::string& method) const {
  const auto isOfIt = [&](const std::string& call) { return call.rfind(method + "(", 0) == 0; };
  return static_cast<std::size_t>(std::count_if(calls_.begin(), calls_.end(), isOfIt));
}

std::string StandInPortal::requestPath(const std::string& token) const {
  return std::string(kPath) + "/request/" + caller_ + "/" + token;
}

void StandInPortal::onCall(GDBusConnection*, const char* sender, const char*, const char*,
                           const char* method, GVariant* arguments,
                           GDBusMethodInvocation* invocation, gpointer data) {
  auto& self = *static_cast<StandInPortal*>(data);
  self.caller_ = pathElement(sender);
  const gio::TextPtr printed(g_variant_print(arguments, FALSE));
  self.calls_.push_back(std::string(method) + printed.get());
  if (std::string(method) == "Register") return self.registerCaller(invocation);
  self.request(method, arguments, invocation);
}

void StandInPortal::registerCaller(GDBusMethodInvocation* invocation) {
  if (!manners_.knowsProgram) return refuse(invocation, "App info not found");
  if (!registered_.insert(caller_).second) return refuse(invocation, "Already registered");
  g_dbus_method_invocation_return_value(invocation, nullptr);
}

// Responds as quickly as can be: before the call itself is answered.
void StandInPortal::request(const std::string& method, GVariant* arguments,
                            GDBusMethodInvocation* invocation) {
  const bool isStrict = manners_.hasRegistry && manners_.needsProgram;
  if (isStrict && !registered_.contains(caller_)) {
    return refuse(invocation, "An app id is required");
  }
  const bool creates = method == "CreateSession";
  const auto request = requestPath(optionOf(arguments, "handle_token"));
  if (creates) {
    session_ = std::string(kPath) + "/session/" + caller_ + "/" +
               optionOf(arguments, "session_handle_token");
  }
  if (manners_.answersAtAll) respond(request, results(creates));
  g_dbus_method_invocation_return_value(invocation, g_variant_new("(o)", request.c_str()));
}

std::string StandInPortal::results(bool creates) const {
  const auto response = creates ? manners_.createResponse : manners_.bindResponse;
  const auto& session = manners_.sessionHandle.empty() ? session_ : manners_.sessionHandle;
  const std::string type = manners_.sessionHandleIsPath ? "objectpath " : "";
  const std::string handle =
      creates ? "{'session_handle': <" + type + "'" + session + "'>}" : "@a{sv} {}";
  return "(uint32 " + std::to_string(response) + ", " + handle + ")";
}

void StandInPortal::refuse(GDBusMethodInvocation* invocation, const std::string& message) {
  errors_.push_back(message);
  g_dbus_method_invocation_return_dbus_error(invocation, "org.freedesktop.portal.Error.NotAllowed",
                                             message.c_str());
}

void StandInPortal::activate(const std::string& session, const std::string& shortcut) const {
  send("Activated", "(objectpath '" + session + "', '" + shortcut + "', uint64 1, @a{sv} {})");
}

void StandInPortal::closeSession(const std::string& path) const {
  emit(path, "org.freedesktop.portal.Session", "Closed", "(@a{sv} {},)");
}

void StandInPortal::send(const std::string& signal, const std::string& arguments) const {
  emit(kPath, "org.freedesktop.portal.GlobalShortcuts", signal, arguments);
}

void StandInPortal::respond(const std::string& path, const std::string& arguments) const {
  emit(path, "org.freedesktop.portal.Request", "Response", arguments);
}

void StandInPortal::emit(const std::string& path, const std::string& interface,
                         const std::string& signal, const std::string& arguments) const {
  auto* values = g_variant_parse(nullptr, arguments.c_str(), nullptr, nullptr, nullptr);
  ASSERT_NE(values, nullptr) << arguments;
  g_dbus_connection_emit_signal(connection_.get(), nullptr, path.c_str(), interface.c_str(),
                                signal.c_str(), values, nullptr);
  g_variant_unref(values);
}

}  // namespace orvane::host::hotkey
