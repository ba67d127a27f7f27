#include "linux/calendars/folder_library.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace orvane::host {
namespace {

// Directories that are watched for something to appear may see it do so before they are watched.
constexpr int searchRounds = 3;

constexpr const char* readerFailure =
    "Calendars cannot be read because the program that reads them does not start.";

// What a listing says beside the items, which are kept elsewhere.
FolderFacts factsOf(DirectoryListing& listing, FolderRole role) {
  FolderFacts facts{listing.state,
                    !listing.items.empty(),
                    listing.holdsOtherFiles,
                    listing.isRemote,
                    std::move(listing.displayName),
                    std::move(listing.folders),
                    std::move(listing.brokenLinks),
                    {},
                    {}};
  for (const auto& item : listing.items) {
    if (role == FolderRole::root) facts.itemNames.push_back(item.name);
    if (item.linkTarget) facts.itemLinks.push_back({item.name, *item.linkTarget});
  }
  return facts;
}

KindAccess accessFrom(bool isReadable, bool isRefused) {
  if (isReadable) return KindAccess::readable;
  return isRefused ? KindAccess::refused : KindAccess::nothing;
}

}  // namespace

FolderLibrary::FolderLibrary(std::vector<std::string> roots, ReaderClient reader,
                             FolderWatch& watch)
    : roots_(std::move(roots)), reader_(std::move(reader)), watch_(watch) {}

FolderLibrary::Update FolderLibrary::update(const FolderChanges& changes, const ReadWindow& window,
                                            const ShownSpan& shown,
                                            const ReaderClient::Pace& pace) {
  auto held = lock();
  const bool rereadsOnly = takeChanges(changes, window, shown);
  if (needsSearch_) search();
  const auto items = takePending();
  held.unlock();
  read(items, pace);
  held.lock();
  const bool changed = std::exchange(changed_, false) && !rereadsOnly;
  const bool hasSuspects = std::any_of(folders_.begin(), folders_.end(), [](const auto& entry) {
    return entry.second.shelf.hasSuspects();
  });
  return {changed, pending_.empty() || readerFailed_, hasSuspects};
}

// Answers whether something is to be read for another reason than a change.
bool FolderLibrary::takeChanges(const FolderChanges& changes, const ReadWindow& window,
                                const ShownSpan& shown) {
  const bool isNewWindow = window != window_;
  const bool isNewSpan = shown != shown_;
  window_ = window;
  shown_ = shown;
  bool rereads = isNewWindow;
  for (auto& [directory, folder] : folders_) {
    const bool isReread = isNewWindow || (isNewSpan && folder.shelf.hasShownOnly());
    const bool isRetried = retriesSuspects_ && folder.shelf.hasSuspects();
    rereads = rereads || isReread;
    folder.isRereadWhole = folder.isRereadWhole || isReread;
    folder.isStale = folder.isStale || changes.everything || isReread || isRetried ||
                     changes.directories.contains(directory);
  }
  needsSearch_ = needsSearch_ || changes.any() || rereads || retriesSuspects_;
  return rereads && !changes.any();
}

void FolderLibrary::search() {
  const auto look = [this](const std::string& directory, FolderRole role) -> const FolderFacts& {
    return this->look(directory, role);
  };
  for (int round = 0; round < searchRounds; ++round) {
    auto tree = findCollections(roots_, look);
    changed_ = changed_ || tree.collections != tree_.collections || tree.refusals != tree_.refusals;
    tree_ = std::move(tree);
    bool sawNewPlace = false;
    for (const auto& [directory, rules] : tree_.rules) {
      const auto known = folders_.find(directory);
      const bool isCovered =
          known != folders_.end() && known->second.facts.state == DirectoryListing::State::listed;
      if (!isCovered) sawNewPlace = watch_.cover(directory) || sawNewPlace;
    }
    if (!sawNewPlace) break;
  }
  forgetUnvisited();
  watch_.adopt(std::move(tree_.rules));
  tree_.rules.clear();
  needsSearch_ = false;
  retriesSuspects_ = false;
}

const FolderFacts& FolderLibrary::look(const std::string& directory, FolderRole role) {
  auto& folder = folders_[directory];
  if (folder.isStale) list(directory, role, folder);
  return folder.facts;
}

void FolderLibrary::list(const std::string& directory, FolderRole role, Folder& folder) {
  watch_.cover(directory);
  auto listing = listDirectory(directory);
  using Reread = ItemShelf::Reread;
  const auto reread = folder.isRereadWhole ? Reread::all
                      : retriesSuspects_   ? Reread::suspectsToo
                                           : Reread::changed;
  if (folder.shelf.hasDue()) {
    std::erase_if(pending_, [&directory](const auto& item) { return item.directory == directory; });
  }
  auto merged = folder.shelf.merge(listing.items, reread);
  changed_ = changed_ || merged.changed;
  for (auto& name : merged.toRead) pending_.push_back({directory, std::move(name)});
  folder.facts = factsOf(listing, role);
  folder.isStale = folder.isRereadWhole = false;
}

void FolderLibrary::forgetUnvisited() {
  const std::unordered_set<std::string> visited(tree_.directories.begin(), tree_.directories.end());
  std::erase_if(folders_, [&visited](const auto& entry) { return !visited.contains(entry.first); });
  std::erase_if(pending_,
                [&visited](const auto& item) { return !visited.contains(item.directory); });
}

std::vector<FolderLibrary::Pending> FolderLibrary::takePending() {
  std::vector<Pending> items(std::make_move_iterator(pending_.begin()),
                             std::make_move_iterator(pending_.end()));
  pending_.clear();
  return items;
}

void FolderLibrary::read(const std::vector<Pending>& items, const ReaderClient::Pace& pace) {
  ReaderClient::Report report;
  if (!items.empty()) {
    ReadJob job{window_.start, window_.end, window_.localTimeZone, {}, shown_.start, shown_.end};
    for (const auto& item : items) job.paths.push_back(item.directory + "/" + item.name);
    report = reader_.read(
        job,
        [this, &items](std::size_t index, wire::FileAnswer* answer) { put(items[index], answer); },
        pace);
  }
  keepUnread(items, report);
}

void FolderLibrary::put(const Pending& item, wire::FileAnswer* answer) {
  const auto held = lock();
  const auto folder = folders_.find(item.directory);
  if (folder != folders_.end()) folder->second.shelf.put(item.name, answer);
}

void FolderLibrary::keepUnread(const std::vector<Pending>& items,
                               const ReaderClient::Report& report) {
  const auto held = lock();
  for (const auto index : report.unread) pending_.push_back(items[index]);
  readerFailed_ = report.programFailed;
}

ProviderState FolderLibrary::state() const {
  Holdings readable;
  bool anyRefused = tree_.refusals > 0;
  bool anyEmptyCalendar = false;
  for (const auto& collection : tree_.collections) {
    const auto holdings = holdingsOf(itemsOf(collection));
    readable.events = readable.events || holdings.events;
    readable.tasks = readable.tasks || holdings.tasks;
    anyRefused = anyRefused || holdings.areRefused;
    anyEmptyCalendar =
        anyEmptyCalendar || (!holdings.areRefused && !holdings.tasks && !holdings.events);
  }
  ProviderState state;
  state.events = accessFrom(readable.events || anyEmptyCalendar, anyRefused);
  state.reminders = accessFrom(readable.tasks, anyRefused);
  if (readerFailed_ && !readable.events && !readable.tasks) state.failure = readerFailure;
  return state;
}

ShelfItems FolderLibrary::itemsOf(const Collection& collection) const {
  ShelfItems items;
  const auto folder = folders_.find(collection.directory);
  if (folder == folders_.end()) return items;
  const auto& shelf = folder->second.shelf;
  if (collection.item) {
    if (const auto* item = shelf.find(*collection.item)) items.push_back(item);
    return items;
  }
  items.reserve(shelf.items().size());
  for (const auto& item : shelf.items()) items.push_back(&item);
  return items;
}

}  // namespace orvane::host
