#pragma once

#include <memory>
#include <string>

#include "linux/desktopicons/icon_backend.h"

namespace orvane::host::desktopicons {

// One key of GSettings that hides the icons when it has a certain value.
struct SettingsKey {
  std::string name;    // of the backend
  std::string schema;  // not relocatable
  std::string key;
  std::string hidden;  // the value, in the text form of variants
};

// Null where the schema or its key is not installed, or the key is of another type.
[[nodiscard]] std::unique_ptr<IconBackend> makeSettingsBackend(const SettingsKey& key);

}  // namespace orvane::host::desktopicons
