#include "linux/calendars/item_shelf.h"

#include <algorithm>
#include <utility>

#include "linux/calendars/stable_hash.h"

namespace orvane::host {
namespace {

bool isBefore(const ShelfItem& item, std::uint64_t name) { return item.name < name; }

bool mustBeRead(const ShelfItem& item, std::uint64_t stamp, ItemShelf::Reread reread) {
  if (reread == ItemShelf::Reread::all || item.isDue) return true;
  if (reread == ItemShelf::Reread::suspectsToo && item.isSuspect) return true;
  return item.stamp != stamp;
}

void drop(ShelfItem& item, ItemState state) {
  item.state = state;
  item.isDue = item.holdsEvents = item.holdsTasks = false;
  item.isSuspect = item.isForShownOnly = false;
  item.kept.reset();
}

void keep(ShelfItem& item, wire::FileAnswer& answer) {
  item.state = ItemState::good;
  item.holdsEvents = answer.holdsEvents;
  item.holdsTasks = answer.holdsTasks;
  item.isSuspect = false;
  item.isForShownOnly = answer.isForShownOnly;
  item.kept = KeptFile::from(answer);
}

}  // namespace

Holdings holdingsOf(const ShelfItems& items) {
  Holdings holdings;
  bool anyGood = false;
  bool anyUnreadable = false;
  for (const auto* item : items) {
    holdings.events = holdings.events || item->holdsEvents;
    holdings.tasks = holdings.tasks || item->holdsTasks;
    anyGood = anyGood || item->state == ItemState::good;
    anyUnreadable = anyUnreadable || item->state == ItemState::unreadable;
  }
  holdings.areRefused = anyUnreadable && !anyGood;
  return holdings;
}

ItemShelf::Merged ItemShelf::merge(const std::vector<ListedItem>& listed, Reread reread) {
  Merged merged;
  std::vector<ShelfItem> items;
  items.reserve(listed.size());
  std::size_t known = 0;
  for (const auto& entry : listed) {
    const auto name = stableHash(entry.name);
    const auto old = std::lower_bound(items_.begin(), items_.end(), name, isBefore);
    const bool isKnown = old != items_.end() && old->name == name;
    if (isKnown) ++known;
    ShelfItem item = isKnown ? std::move(*old) : ShelfItem{};
    item.name = name;
    if (entry.stamp == 0) {
      merged.changed = merged.changed || item.state != ItemState::unreadable;
      drop(item, ItemState::unreadable);
    } else if (mustBeRead(item, entry.stamp, reread)) {
      merged.changed = true;
      merged.toRead.push_back(entry.name);
      item.isDue = true;
    }
    // No listing agrees with the inverse, so a file that may change unseen is read once more.
    item.stamp = entry.isFresh ? ~entry.stamp : entry.stamp;
    items.push_back(std::move(item));
  }
  merged.changed = merged.changed || known != items_.size();
  std::sort(items.begin(), items.end(),
            [](const auto& a, const auto& b) { return a.name < b.name; });
  items_ = std::move(items);
  return merged;
}

void ItemShelf::put(const std::string& name, wire::FileAnswer* answer) {
  const auto hash = stableHash(name);
  const auto item = std::lower_bound(items_.begin(), items_.end(), hash, isBefore);
  if (item == items_.end() || item->name != hash) return;
  item->isDue = false;
  const bool wasGood = item->state == ItemState::good && (item->holdsEvents || item->holdsTasks);
  const bool wasRead = answer != nullptr && answer->outcome != wire::ReadOutcome::tooLarge;
  if (wasRead && answer->outcome == wire::ReadOutcome::unreadable) {
    drop(*item, ItemState::unreadable);
  } else if (wasRead && answer->outcome == wire::ReadOutcome::good) {
    keep(*item, *answer);
  } else if (wasRead && wasGood && !item->isSuspect) {
    item->isSuspect = true;
  } else {
    drop(*item, ItemState::bad);
  }
}

const ShelfItem* ItemShelf::find(const std::string& name) const {
  const auto hash = stableHash(name);
  const auto item = std::lower_bound(items_.begin(), items_.end(), hash, isBefore);
  return item != items_.end() && item->name == hash ? &*item : nullptr;
}

bool ItemShelf::hasSuspects() const {
  return std::any_of(items_.begin(), items_.end(), [](const auto& item) { return item.isSuspect; });
}

bool ItemShelf::hasDue() const {
  return std::any_of(items_.begin(), items_.end(), [](const auto& item) { return item.isDue; });
}

bool ItemShelf::hasShownOnly() const {
  return std::any_of(items_.begin(), items_.end(),
                     [](const auto& item) { return item.isForShownOnly; });
}

}  // namespace orvane::host
