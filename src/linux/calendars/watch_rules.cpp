#include "linux/calendars/watch_rules.h"

#include "linux/calendars/directory_listing.h"

namespace orvane::host {

bool concerns(const WatchRule& rule, std::string_view name, bool isDirectory) {
  if (rule.names == WatchedNames::one) return name == rule.name;
  if (name.starts_with('.')) return false;
  if (rule.names == WatchedNames::anyVisible || isDirectory) return true;
  return isItemName(name) || name == "displayname";
}

}  // namespace orvane::host
