#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "linux/calendars/directory_listing.h"
#include "linux/calendars/watch_rules.h"

namespace orvane::host {

// What the search for calendars must know of a directory.
struct FolderFacts {
  DirectoryListing::State state = DirectoryListing::State::missing;
  bool holdsItems = false;
  bool holdsOtherFiles = false;
  bool isRemote = false;
  std::optional<std::string> displayName;
  std::vector<ListedFolder> folders;     // links last
  std::vector<std::string> brokenLinks;  // where they lead to
  std::vector<std::string> itemNames;    // only of a root, whose files are calendars
  struct ItemLink {
    std::string name;
    std::string target;
  };
  std::vector<ItemLink> itemLinks;  // items that are really elsewhere
};

enum class FolderRole { root, inner };

// Lists a directory, named by its real path, or knows it already.
using LookAtFolder = std::function<const FolderFacts&(const std::string& directory, FolderRole)>;

// One calendar: a folder of items, or a single file.
struct Collection {
  std::string identifier;  // follows from where it really is: stable across runs and renames
  std::string title;       // fit to be shown; never empty
  std::string directory;   // real path
  std::optional<std::string> item;  // the single file's name in it

  friend bool operator==(const Collection&, const Collection&) = default;
};

struct CollectionTree {
  std::vector<Collection> collections;
  std::vector<std::string> directories;  // all that were looked at
  std::size_t refusals = 0;              // places that are there and cannot be looked into
  bool hasRemote = false;
  WatchRules rules;
};

// Finds the calendars below the roots. Every sub-folder of a root is one, and so is every item file
// there; a folder that holds only folders is an account, whose sub-folders are the calendars. One
// real path is one calendar: where several ways lead to it the direct one names it, else the first.
CollectionTree findCollections(const std::vector<std::string>& roots, const LookAtFolder& look);

}  // namespace orvane::host
