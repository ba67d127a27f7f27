#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "foundation/subscription.h"

namespace orvane {

// A list of observers that are told values, in the order in which they subscribed. Observers may
// subscribe and unsubscribe, themselves included, while a value is being sent: a new one hears of
// the next value, an ended one hears nothing more. Main thread only.
template <class... Values>
class Subject {
 public:
  using Observer = std::function<void(const Values&...)>;

  Subject() = default;
  Subject(const Subject&) = delete;
  Subject& operator=(const Subject&) = delete;

  Subscription subscribe(Observer observer) {
    auto entry = std::make_shared<Entry>(Entry{std::move(observer), true});
    entries_->push_back(entry);
    return Subscription([weakEntries = std::weak_ptr(entries_), weakEntry = std::weak_ptr(entry)] {
      const auto ended = weakEntry.lock();
      if (!ended) return;
      ended->active = false;
      if (const auto entries = weakEntries.lock()) std::erase(*entries, ended);
    });
  }

  void send(const Values&... values) const {
    // A copy, because observers may change the list; the entries stay shared with it.
    const auto snapshot = *entries_;
    for (const auto& entry : snapshot) {
      if (entry->active) entry->observer(values...);
    }
  }

  [[nodiscard]] std::size_t observerCount() const { return entries_->size(); }

 private:
  struct Entry {
    Observer observer;
    bool active;
  };
  std::shared_ptr<std::vector<std::shared_ptr<Entry>>> entries_ =
      std::make_shared<std::vector<std::shared_ptr<Entry>>>();
};

}  // namespace orvane
