#pragma once

#include <optional>
#include <string>

#include "settings/dashboard_settings.h"
#include "snapshot_options.h"

namespace orvane::tools {

// Gives a property of the settings the value that the text stands for: booleans are true or false,
// lists are separated by commas. Answers what is wrong, and then changes nothing.
std::optional<std::string> assign(DashboardSettings& settings, const SettingAssignment& assignment);

}  // namespace orvane::tools
