#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace orvane::formwire {

// Takes values out of JSON that may be anything. The first that is missing or of another type makes
// all readers of the document fail, and from then on they yield zeros and empty values, so that
// callers ask only once at the end.
class JsonReader {
 public:
  using Json = nlohmann::json;

  JsonReader(const Json& value, bool& failed) : value_(value), failed_(failed) {}

  void fail() const { failed_ = true; }
  [[nodiscard]] bool hasFailed() const { return failed_; }
  [[nodiscard]] const Json& value() const { return value_; }

  [[nodiscard]] JsonReader at(const char* name) const {
    static const Json kAbsent;
    const auto found = value_.is_object() ? value_.find(name) : value_.end();
    if (!value_.is_object() || found == value_.end()) {
      fail();
      return {kAbsent, failed_};
    }
    return {*found, failed_};
  }

  [[nodiscard]] std::string text() const {
    if (value_.is_string()) return value_.get<std::string>();
    fail();
    return {};
  }
  [[nodiscard]] bool flag() const {
    if (value_.is_boolean()) return value_.get<bool>();
    fail();
    return false;
  }
  [[nodiscard]] double number() const {
    const double number = value_.is_number() ? value_.get<double>() : kNoNumber;
    if (std::isfinite(number)) return number;
    fail();
    return 0;
  }
  [[nodiscard]] double numberIn(double lowest, double highest) const {
    const double found = number();
    if (found >= lowest && found <= highest) return found;
    fail();
    return lowest;
  }
  [[nodiscard]] std::uint64_t count() const {
    if (value_.is_number_unsigned()) return value_.get<std::uint64_t>();
    fail();
    return 0;
  }

  template <class ReadOne>
  [[nodiscard]] auto list(std::size_t most, ReadOne readOne) const
      -> std::vector<decltype(readOne(*this))> {
    std::vector<decltype(readOne(*this))> values;
    if (!value_.is_array() || value_.size() > most) fail();
    if (failed_) return values;
    values.reserve(value_.size());
    for (const Json& element : value_) values.push_back(readOne(JsonReader(element, failed_)));
    return values;
  }

  template <class ReadOne>
  [[nodiscard]] auto members(std::size_t most, ReadOne readOne) const
      -> std::map<std::string, decltype(readOne(*this))> {
    std::map<std::string, decltype(readOne(*this))> values;
    if (!value_.is_object() || value_.size() > most) fail();
    if (failed_) return values;
    for (const auto& [name, value] : value_.items()) {
      values.emplace(name, readOne(JsonReader(value, failed_)));
    }
    return values;
  }

  // Null stands for nothing.
  template <class ReadOne>
  [[nodiscard]] auto optional(ReadOne readOne) const -> std::optional<decltype(readOne(*this))> {
    if (value_.is_null() || failed_) return std::nullopt;
    return readOne(*this);
  }

 private:
  static constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

  const Json& value_;
  bool& failed_;
};

}  // namespace orvane::formwire
