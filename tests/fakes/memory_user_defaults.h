#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/user_defaults.h"

namespace orvane::fakes {

// Preferences in memory, with every write in order.
class MemoryUserDefaults final : public UserDefaults {
 public:
  [[nodiscard]] std::optional<DefaultsValue> object(const std::string& key) const override {
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
  }
  void set(const std::string& key, DefaultsValue value) override {
    writes.emplace_back(key, value);
    values.insert_or_assign(key, std::move(value));
  }

  std::map<std::string, DefaultsValue> values;
  std::vector<std::pair<std::string, DefaultsValue>> writes;
};

}  // namespace orvane::fakes
