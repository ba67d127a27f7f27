#pragma once

#include <gio/gio.h>

#include <memory>
#include <string>

namespace orvane::host {

// Where a person learns why there is no settings window. Main thread only.
class SettingsNotice {
 public:
  virtual ~SettingsNotice() = default;

  // A desktop notification, which replaces the one before it; a line on standard error where there
  // is no session bus, or nobody on it who shows notifications.
  virtual void say(const std::string& title, const std::string& sentence) = 0;
};

// Null: there is no session bus.
[[nodiscard]] std::unique_ptr<SettingsNotice> makeSettingsNotice(GDBusConnection* connection);

}  // namespace orvane::host
