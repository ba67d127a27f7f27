#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "linux/calendars/directory_listing.h"
#include "linux/calendars/kept_file.h"
#include "linux/wire/reader_messages.h"

namespace orvane::host {

enum class ItemState : std::uint8_t { unread, good, bad, unreadable };

// What is known of one file. Names are kept as hashes: thousands of files of which nothing is shown
// cost next to nothing.
struct ShelfItem {
  std::uint64_t name = 0;
  std::uint64_t stamp = 0;
  ItemState state = ItemState::unread;
  bool isDue = false;  // to be read, again or for the first time
  bool holdsEvents = false;
  bool holdsTasks = false;
  // It was good and has just turned bad: perhaps somebody is in the middle of writing it. What it
  // held before is shown until it has been looked at once more.
  bool isSuspect = false;
  bool isForShownOnly = false;  // what it holds beyond what was looked at is not known
  std::unique_ptr<KeptFile> kept;
};

using ShelfItems = std::vector<const ShelfItem*>;

// What some items hold together.
struct Holdings {
  bool events = false;
  bool tasks = false;
  bool areRefused = false;  // they are there, and not one can be read
};
Holdings holdingsOf(const ShelfItems& items);

// The items of one directory.
class ItemShelf {
 public:
  enum class Reread { changed, suspectsToo, all };

  struct Merged {
    std::vector<std::string> toRead;  // names
    bool changed = false;
  };
  // Takes over what the directory now holds. What is to be read again keeps its old content until
  // then; what is gone is forgotten.
  Merged merge(const std::vector<ListedItem>& listed, Reread reread);

  // The reader's word on an item; null: it was the end of the reader. Names that are not on the
  // shelf are passed over.
  void put(const std::string& name, wire::FileAnswer* answer);

  [[nodiscard]] const std::vector<ShelfItem>& items() const { return items_; }
  [[nodiscard]] const ShelfItem* find(const std::string& name) const;
  [[nodiscard]] bool hasSuspects() const;
  [[nodiscard]] bool hasDue() const;
  [[nodiscard]] bool hasShownOnly() const;

 private:
  std::vector<ShelfItem> items_;  // by `name`
};

}  // namespace orvane::host
