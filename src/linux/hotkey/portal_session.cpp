#include "linux/hotkey/portal_session.h"

#include <algorithm>
#include <utility>

namespace orvane::host::hotkey {
namespace {

constexpr const char* kPath = "/org/freedesktop/portal/desktop";
constexpr const char* kGlobalShortcuts = "org.freedesktop.portal.GlobalShortcuts";
constexpr const char* kRegistry = "org.freedesktop.host.portal.Registry";
constexpr const char* kApplication = "org.orvane.Orvane";
// Desktops keep the key that the user chose under this name.
constexpr const char* kShortcut = "toggle-focus";
// What desktops show beside the key.
constexpr const char* kDescription = "Focus mode";
// A call is answered at once; it is the Response that waits for the user.
constexpr std::chrono::seconds kCallLimit{10};

std::string lookUpText(GVariant* dictionary, const char* key) {
  const char* text = nullptr;
  // Old portals give the session handle as an object path, newer ones as a text.
  if (g_variant_lookup(dictionary, key, "&s", &text)) return text;
  if (g_variant_lookup(dictionary, key, "&o", &text)) return text;
  return {};
}

}  // namespace

PortalSession::PortalSession(GDBusConnection* connection, PortalSessionOptions options)
    : connection_(gio::shared(connection)), options_(std::move(options)) {
  introduce();
}

// A program that is not sandboxed tells who it is. Portals from before that was asked for do not
// know the method, and one that heard it already refuses it: both go on all the same.
void PortalSession::introduce() {
  const gio::Method method{options_.owner, kPath, kRegistry, "Register"};
  gio::call(connection_.get(), method, g_variant_new_parsed("(%s, @a{sv} {})", kApplication),
            kCallLimit, calls_, [this](GVariant*, const gio::Failure&) { createSession(); });
}

// Some desktops keep the user's key under the session's token, so it is always the same one.
void PortalSession::createSession() {
  auto* options = g_variant_new_parsed(
      "({'handle_token': <'orvane_create'>, 'session_handle_token': <'orvane'>},)");
  request("CreateSession", "orvane_create", options, [this](GVariant* results) {
    const auto handle = lookUpText(results, "session_handle");
    if (!g_variant_is_object_path(handle.c_str())) return;
    listen(handle);
    bindShortcut(handle);
  });
}

void PortalSession::bindShortcut(const std::string& sessionHandle) {
  auto* arguments = g_variant_new_parsed(
      "(%o, [(%s, {'description': <%s>, 'preferred_trigger': <%s>})], '', "
      "{'handle_token': <'orvane_bind'>})",
      sessionHandle.c_str(), kShortcut, kDescription, options_.trigger.c_str());
  request("BindShortcuts", "orvane_bind", arguments, [this](GVariant*) { isGranted_ = true; });
}

void PortalSession::listen(const std::string& sessionHandle) {
  const gio::Method activated{options_.owner, kPath, kGlobalShortcuts, "Activated"};
  const auto heard = [this, sessionHandle](GVariant* arguments) {
    if (!g_variant_is_of_type(arguments, G_VARIANT_TYPE("(osta{sv})"))) return;
    const char* session = nullptr;
    const char* shortcut = nullptr;
    g_variant_get_child(arguments, 0, "&o", &session);
    g_variant_get_child(arguments, 1, "&s", &shortcut);
    if (session == sessionHandle && std::string(kShortcut) == shortcut) options_.pressed();
  };
  activations_ = std::make_unique<gio::SignalWatch>(connection_.get(), activated, heard);
  const gio::Method closed{options_.owner, sessionHandle, "org.freedesktop.portal.Session",
                           "Closed"};
  end_ = std::make_unique<gio::SignalWatch>(connection_.get(), closed,
                                            [this](GVariant*) { onClosed(); });
}

// Whoever is told may destroy this.
void PortalSession::onClosed() {
  if (!std::exchange(isGranted_, false)) return;
  const auto closed = options_.closed;
  closed();
}

// The request's path is known beforehand, so that a quick response is not missed.
void PortalSession::request(const std::string& method, const std::string& token,
                            GVariant* arguments, std::function<void(GVariant* results)> granted) {
  const gio::Method response{options_.owner, requestPath(token), "org.freedesktop.portal.Request",
                             "Response"};
  response_ = std::make_unique<gio::SignalWatch>(
      connection_.get(), response, [granted = std::move(granted)](GVariant* answer) {
        if (!g_variant_is_of_type(answer, G_VARIANT_TYPE("(ua{sv})"))) return;
        guint32 refusal = 0;
        GVariant* results = nullptr;
        g_variant_get(answer, "(u@a{sv})", &refusal, &results);
        const gio::VariantPtr owner(results);
        if (refusal == 0) granted(results);
      });
  gio::call(connection_.get(), {options_.owner, kPath, kGlobalShortcuts, method}, arguments,
            kCallLimit, calls_, nullptr);
}

std::string PortalSession::requestPath(const std::string& token) const {
  std::string sender = g_dbus_connection_get_unique_name(connection_.get());
  sender.erase(0, 1);  // the colon
  std::replace(sender.begin(), sender.end(), '.', '_');
  return std::string(kPath) + "/request/" + sender + "/" + token;
}

}  // namespace orvane::host::hotkey
