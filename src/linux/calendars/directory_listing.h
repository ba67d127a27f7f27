#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::host {

// A file that may hold an iCalendar object.
struct ListedItem {
  std::string name;
  // Differs when the file is another one or was written to; 0 when it could not be looked at.
  std::uint64_t stamp = 0;
  // Changed so lately that one more change might leave the stamp as it is.
  bool isFresh = false;
  // Where the file really is, when the entry is a symbolic link.
  std::optional<std::string> linkTarget;
};

struct ListedFolder {
  std::string name;
  std::string realPath;
  bool isLink = false;
};

// What one directory holds, as far as calendars go. Hidden entries do not count.
struct DirectoryListing {
  enum class State { listed, missing, refused };

  State state = State::missing;
  std::vector<ListedItem> items;         // by name
  std::vector<ListedFolder> folders;     // by name, links last
  std::vector<std::string> brokenLinks;  // where they lead to
  bool holdsOtherFiles = false;
  bool isRemote = false;                   // on a file system whose changes come without notice
  std::optional<std::string> displayName;  // what the file of that name says
};

// Whether files of this name are read: it ends in ".ics", in any case. Names of temporary files
// end in something else or begin with a dot.
bool isItemName(std::string_view name);

// `path` is a real path. Reads at most a few kilobytes, of the file `displayname`; nothing is
// opened that could block.
DirectoryListing listDirectory(const std::string& path);

// The absolute path without links, nothing where there is none.
std::optional<std::string> realPathOf(const std::string& path);

}  // namespace orvane::host
