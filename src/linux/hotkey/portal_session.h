#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "linux/gio/call.h"
#include "linux/hotkey/hot_key_source.h"

namespace orvane::host::hotkey {

// One conversation with one portal: says who we are, opens a session, binds the one shortcut and
// hears of it. A step that fails or is refused ends the conversation without a word.
class PortalSession {
 public:
  // `owner` is the portal's unique name; `trigger` is what we should like the key to be.
  PortalSession(GDBusConnection* connection, std::string owner, std::string trigger,
                Pressed pressed);

 private:
  void introduce();
  void createSession();
  void bindShortcut(const std::string& sessionHandle);
  void listen(const std::string& sessionHandle);
  // Calls a method of GlobalShortcuts that is answered by a Response of a request, and hands on the
  // results of one that went well.
  void request(const std::string& method, const std::string& token, GVariant* arguments,
               std::function<void(GVariant* results)> granted);
  [[nodiscard]] std::string requestPath(const std::string& token) const;

  const gio::ObjectPtr<GDBusConnection> connection_;
  const std::string owner_;
  const std::string trigger_;
  const Pressed pressed_;
  const gio::Cancellation calls_;
  std::unique_ptr<gio::SignalWatch> response_;
  std::unique_ptr<gio::SignalWatch> activations_;
};

}  // namespace orvane::host::hotkey
