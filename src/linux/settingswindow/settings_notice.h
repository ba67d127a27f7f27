// settingswindow/ shows the form of the settings.
#pragma once

#include <gio/gio.h>

#include <memory>

#include "platform/form_window.h"

namespace orvane::host {

// Where the settings window's program is not installed: a desktop notification says so each time
// the window is asked for, and without a session bus a line on standard error.
[[nodiscard]] std::unique_ptr<FormWindowServer> makeSettingsNotice(GDBusConnection* connection);

}  // namespace orvane::host
