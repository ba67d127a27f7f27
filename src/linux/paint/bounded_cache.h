#pragma once

#include <cstddef>
#include <functional>
#include <unordered_map>
#include <utility>

namespace orvane::host {

// Remembers what was made for a key, within a budget. It holds two generations: when the younger
// one has used up half of the budget, it becomes the older one and what stood there, not asked
// for since, is forgotten.
template <typename Key, typename Value, typename Hash>
class BoundedCache {
 public:
  // `budget` is in the unit of the costs that are given to insert().
  explicit BoundedCache(std::size_t budget) : half_(budget / 2) {}

  // Null when nothing is known. Valid until the next call.
  const Value* find(const Key& key) {
    if (const auto found = young_.find(key); found != young_.end()) return &found->second.value;
    const auto found = old_.find(key);
    if (found == old_.end()) return nullptr;
    Entry entry = std::move(found->second);
    old_.erase(found);
    return &store(key, std::move(entry));
  }

  const Value& insert(const Key& key, Value value, std::size_t cost = 1) {
    return store(key, {std::move(value), cost});
  }

  [[nodiscard]] std::size_t size() const { return young_.size() + old_.size(); }

 private:
  struct Entry {
    Value value;
    std::size_t cost = 0;
  };

  const Value& store(const Key& key, Entry entry) {
    if (!young_.empty() && youngCost_ + entry.cost > half_) {
      old_ = std::exchange(young_, {});
      youngCost_ = 0;
    }
    youngCost_ += entry.cost;
    return young_.insert_or_assign(key, std::move(entry)).first->second.value;
  }

  std::size_t half_;
  std::size_t youngCost_ = 0;
  std::unordered_map<Key, Entry, Hash> young_;
  std::unordered_map<Key, Entry, Hash> old_;
};

// Folds another value's hash into `seed`.
template <typename T>
std::size_t hashWith(std::size_t seed, const T& value) {
  return seed ^ (std::hash<T>{}(value) + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2));
}

}  // namespace orvane::host
