#include "linux/defaults/json_defaults.h"

#include <algorithm>
#include <vector>

namespace orvane::host {
namespace {

constexpr int kDeepest = 64;

}  // namespace

std::optional<JsonDefaults> parseDefaults(std::string_view text) {
  // The parser takes a zero byte for the end, whatever follows.
  if (text.find('\0') != text.npos) return std::nullopt;
  bool tooDeep = false;
  const auto watchDepth = [&tooDeep](int depth, auto, const JsonDefaults&) {
    tooDeep = tooDeep || depth > kDeepest;
    return !tooDeep;
  };
  auto json = JsonDefaults::parse(text, watchDepth, /*allow_exceptions=*/false);
  if (tooDeep || !json.is_object()) return std::nullopt;
  return json;
}

std::string textOf(const JsonDefaults& defaults) {
  return defaults.dump(2, ' ', false, JsonDefaults::error_handler_t::replace) + "\n";
}

std::optional<DefaultsValue> valueOf(const JsonDefaults& json) {
  if (json.is_boolean()) return json.get<bool>();
  if (json.is_number()) return json.get<double>();
  if (json.is_string()) return json.get<std::string>();
  const auto isText = [](const JsonDefaults& element) { return element.is_string(); };
  if (json.is_array() && std::ranges::all_of(json, isText)) {
    return json.get<std::vector<std::string>>();
  }
  return std::nullopt;
}

JsonDefaults jsonOf(const DefaultsValue& value) {
  return std::visit([](const auto& held) { return JsonDefaults(held); }, value);
}

}  // namespace orvane::host
