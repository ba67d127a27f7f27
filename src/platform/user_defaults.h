#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace orvane {

// A stored value. A type is what was stored: a text is no number, a number no boolean.
using DefaultsValue = std::variant<bool, double, std::string, std::vector<std::string>>;

// The user's preferences, by key. Reading and writing never fail towards the caller: an unwritable
// place is survived, and the values then last as long as the process. Main thread only.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  // Absent when there is no such key or its value is of a type that DefaultsValue cannot hold.
  [[nodiscard]] virtual std::optional<DefaultsValue> object(const std::string& key) const = 0;
  virtual void set(const std::string& key, DefaultsValue value) = 0;
};

}  // namespace orvane
