#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace orvane::host {

// Which entries of a watched directory mean something.
enum class WatchedNames {
  items,       // files that are read, `displayname`, and sub-folders
  anyVisible,  // whatever is not hidden: any entry may change what the directory is
  one,         // the one that the rule names
};

// "When such an entry of the watched directory changes, list `affected` again."
struct WatchRule {
  WatchedNames names = WatchedNames::items;
  std::string name;      // of WatchedNames::one
  std::string affected;  // a directory; empty: whatever could not be found so far
};

// The rules of each watched directory.
using WatchRules = std::unordered_map<std::string, std::vector<WatchRule>>;

// What changed since one last asked.
struct FolderChanges {
  bool everything = false;                      // nobody knows what
  std::unordered_set<std::string> directories;  // to be listed again
  bool places = false;                          // something may have appeared that was not there

  [[nodiscard]] bool any() const { return everything || places || !directories.empty(); }
};

// Whether a change of the entry `name` concerns the rule.
bool concerns(const WatchRule& rule, std::string_view name, bool isDirectory);

}  // namespace orvane::host
