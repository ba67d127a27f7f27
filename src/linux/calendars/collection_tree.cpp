#include "linux/calendars/collection_tree.h"

#include <sys/stat.h>

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "linux/calendars/shown_text.h"
#include "linux/calendars/stable_hash.h"

namespace orvane::host {
namespace {

using State = DirectoryListing::State;

std::string parentOf(const std::string& path) {
  const auto slash = path.find_last_of('/');
  return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

std::string nameOf(const std::string& path) { return path.substr(path.find_last_of('/') + 1); }

std::string inside(const std::string& directory, const std::string& name) {
  return directory == "/" ? directory + name : directory + "/" + name;
}

std::string titleFrom(const std::string& name) {
  auto title = shownText(name);
  return title.empty() ? "Calendar" : title;
}

bool isSymlink(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

// A folder on the way down from a root.
struct Place {
  std::string name;  // as it was found
  std::string realPath;
  std::vector<std::string> above;  // real paths of the root and the account around it
};

class Search {
 public:
  Search(const std::vector<std::string>& roots, const LookAtFolder& look)
      : roots_(roots), look_(look) {}

  CollectionTree run() {
    for (const auto& root : roots_) searchRoot(root);
    // Links come last, so that a calendar is named by where it really is.
    for (std::size_t i = 0; i < linkedPlaces_.size(); ++i) searchFolder(Place(linkedPlaces_[i]));
    for (const auto& file : linkedFiles_) addFile(file.directory, file.name, file.realPath);
    return std::move(tree_);
  }

 private:
  struct LinkedFile {
    std::string directory;
    std::string name;
    std::string realPath;
  };

  void searchRoot(const std::string& root) {
    const auto real = realPathOf(root);
    if (!real) return await(root, {});
    if (isSymlink(root)) watchEntry(root, {});
    if (!visited_.insert(*real).second) return;
    const auto& facts = look_(*real, FolderRole::root);
    if (!note(*real, facts, WatchedNames::anyVisible)) return;
    for (const auto& name : facts.itemNames) {
      const auto link = std::find_if(facts.itemLinks.begin(), facts.itemLinks.end(),
                                     [&name](const auto& item) { return item.name == name; });
      if (link != facts.itemLinks.end()) {
        linkedFiles_.push_back({*real, name, link->target});
      } else {
        addFile(*real, name, inside(*real, name));
      }
    }
    for (const auto& folder : facts.folders) visit(folder, {*real});
  }

  void visit(const ListedFolder& folder, std::vector<std::string> above) {
    Place place{folder.name, folder.realPath, std::move(above)};
    if (folder.isLink) {
      linkedPlaces_.push_back(std::move(place));
    } else {
      searchFolder(place);
    }
  }

  void searchFolder(const Place& place) {
    if (!visited_.insert(place.realPath).second) return;
    const auto& facts = look_(place.realPath, FolderRole::inner);
    const bool isAccountLevel = place.above.size() == 1;
    const auto inner = isAccountLevel ? usableFolders(place, facts) : std::vector<ListedFolder>();
    const bool isAccount = !facts.holdsItems && !facts.holdsOtherFiles && !inner.empty();
    // The first item makes an empty folder a calendar, the first folder makes it an account.
    const bool isOpen = isAccountLevel && !facts.holdsItems;
    if (!note(place.realPath, facts, isOpen ? WatchedNames::anyVisible : WatchedNames::items))
      return;
    if (!isAccount) return addFolder(place, facts);
    auto above = place.above;
    above.push_back(place.realPath);
    for (const auto& folder : inner) visit(folder, above);
  }

  // Those that do not lead back up.
  static std::vector<ListedFolder> usableFolders(const Place& place, const FolderFacts& facts) {
    std::vector<ListedFolder> usable;
    for (const auto& folder : facts.folders) {
      const auto& above = place.above;
      const bool isCycle = folder.realPath == place.realPath ||
                           std::find(above.begin(), above.end(), folder.realPath) != above.end();
      if (!isCycle) usable.push_back(folder);
    }
    return usable;
  }

  // Answers whether the directory could be looked into.
  bool note(const std::string& directory, const FolderFacts& facts, WatchedNames names) {
    tree_.directories.push_back(directory);
    tree_.hasRemote = tree_.hasRemote || facts.isRemote;
    if (facts.state == State::refused) {
      ++tree_.refusals;
      watchEntry(directory, directory);
    }
    if (facts.state != State::listed) return false;
    addRule(directory, {names, {}, directory});
    for (const auto& item : facts.itemLinks) watchEntry(item.target, directory);
    for (const auto& target : facts.brokenLinks) await(target, directory);
    return true;
  }

  void addFolder(const Place& place, const FolderFacts& facts) {
    add(facts.displayName.value_or(titleFrom(place.name)), place.realPath, place.realPath, {});
  }

  void addFile(const std::string& directory, const std::string& name, const std::string& realPath) {
    if (!visited_.insert(realPath).second) return;
    constexpr std::size_t ending = 4;  // ".ics"
    add(titleFrom(name.substr(0, name.size() - ending)), realPath, directory, name);
  }

  void add(std::string title, const std::string& realPath, const std::string& directory,
           std::optional<std::string> item) {
    tree_.collections.push_back(
        {"ics-" + hexText(stableHash(realPath)), std::move(title), directory, std::move(item)});
  }

  void addRule(const std::string& directory, WatchRule rule) {
    tree_.rules[directory].push_back(std::move(rule));
  }

  // Changes of the entry itself, seen from the directory around it.
  void watchEntry(const std::string& path, const std::string& affected) {
    if (const auto parent = realPathOf(parentOf(path))) {
      addRule(*parent, {WatchedNames::one, nameOf(path), affected});
    }
  }

  // The appearing of what is not there, seen from the nearest directory that is.
  void await(const std::string& path, const std::string& affected) {
    std::string missing = path;
    while (missing.size() > 1 && !realPathOf(parentOf(missing))) missing = parentOf(missing);
    watchEntry(missing, affected);
  }

  const std::vector<std::string>& roots_;
  const LookAtFolder& look_;
  CollectionTree tree_;
  std::unordered_set<std::string> visited_;
  std::vector<Place> linkedPlaces_;
  std::vector<LinkedFile> linkedFiles_;
};

}  // namespace

CollectionTree findCollections(const std::vector<std::string>& roots, const LookAtFolder& look) {
  return Search(roots, look).run();
}

}  // namespace orvane::host
