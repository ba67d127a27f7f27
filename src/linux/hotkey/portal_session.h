#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "linux/gio/call.h"
#include "linux/hotkey/hot_key_source.h"

namespace orvane::host::hotkey {

struct PortalSessionOptions {
  std::string owner;    // the portal's unique name
  std::string trigger;  // what we should like the key to be
  Pressed pressed;
  // Told once when the desktop closed a session in which the shortcut had been granted; may destroy
  // the session.
  std::function<void()> closed;
};

// One conversation with one portal: says who we are, opens a session, binds the one shortcut and
// hears of it. A step that fails or is refused ends the conversation without a word.
class PortalSession {
 public:
  PortalSession(GDBusConnection* connection, PortalSessionOptions options);

 private:
  void introduce();
  void createSession();
  void bindShortcut(const std::string& sessionHandle);
  void listen(const std::string& sessionHandle);
  void onClosed();
  // Calls a method of GlobalShortcuts that is answered by a Response of a request, and hands on the
  // results of one that went well.
  void request(const std::string& method, const std::string& token, GVariant* arguments,
               std::function<void(GVariant* results)> granted);
  [[nodiscard]] std::string requestPath(const std::string& token) const;

  const gio::ObjectPtr<GDBusConnection> connection_;
  const PortalSessionOptions options_;
  const gio::Cancellation calls_;
  std::unique_ptr<gio::SignalWatch> response_;
  std::unique_ptr<gio::SignalWatch> activations_;
  std::unique_ptr<gio::SignalWatch> end_;
  bool isGranted_ = false;
};

}  // namespace orvane::host::hotkey
