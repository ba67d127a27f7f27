#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "linux/calendars/calendar_provider.h"
#include "linux/calendars/collection_tree.h"
#include "linux/calendars/folder_watch.h"
#include "linux/calendars/item_shelf.h"
#include "linux/calendars/read_window.h"
#include "linux/calendars/reader_client.h"

namespace orvane::host {

// All calendars below the roots with what they hold in a window, kept up to date at the cost of
// what changed. One thread at a time may update it, which can take long; what it holds may be
// looked at meanwhile, under a lock.
class FolderLibrary {
 public:
  // The watch must outlive the library.
  FolderLibrary(std::vector<std::string> roots, ReaderClient reader, FolderWatch& watch);

  struct Update {
    bool changed = false;      // in the folders; a new window alone is no change
    bool isComplete = true;    // false: the pace ended it, and it should be called again soon
    bool hasSuspects = false;  // to be looked at once more in a while
  };
  // Lists what changed, then reads what is to be read, without holding the lock.
  Update update(const FolderChanges& changes, const ReadWindow& window, const ShownSpan& shown,
                const ReaderClient::Pace& pace);
  // Items that had just turned bad are read once more by the next update.
  void retrySuspects() { retriesSuspects_ = true; }

  // For the thread that updates.
  [[nodiscard]] const ReadWindow& window() const { return window_; }
  [[nodiscard]] const ShownSpan& shown() const { return shown_; }
  [[nodiscard]] bool hasRemote() const { return tree_.hasRemote; }

  // To be held while looking at the following.
  [[nodiscard]] std::unique_lock<std::mutex> lock() const { return std::unique_lock(mutex_); }
  [[nodiscard]] ProviderState state() const;
  [[nodiscard]] const std::vector<Collection>& collections() const { return tree_.collections; }
  // The items of a collection, by an order of their own.
  [[nodiscard]] ShelfItems itemsOf(const Collection& collection) const;

 private:
  struct Folder {
    FolderFacts facts;
    ItemShelf shelf;
    bool isStale = true;
    bool isRereadWhole = false;
  };
  struct Pending {
    std::string directory;
    std::string name;
  };

  bool takeChanges(const FolderChanges& changes, const ReadWindow& window, const ShownSpan& shown);
  void search();
  const FolderFacts& look(const std::string& directory, FolderRole role);
  void list(const std::string& directory, FolderRole role, Folder& folder);
  void forgetUnvisited();
  std::vector<Pending> takePending();
  void read(const std::vector<Pending>& items, const ReaderClient::Pace& pace);
  void put(const Pending& item, wire::FileAnswer* answer);
  void keepUnread(const std::vector<Pending>& items, const ReaderClient::Report& report);

  std::vector<std::string> roots_;
  ReaderClient reader_;
  FolderWatch& watch_;
  ReadWindow window_;
  ShownSpan shown_;
  CollectionTree tree_;
  std::unordered_map<std::string, Folder> folders_;
  std::deque<Pending> pending_;
  bool needsSearch_ = true;
  bool retriesSuspects_ = false;
  bool changed_ = false;
  bool readerFailed_ = false;
  mutable std::mutex mutex_;
};

}  // namespace orvane::host
