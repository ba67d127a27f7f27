#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "platform/user_defaults.h"

namespace orvane::host {

// The values of a defaults file by key, in the order in which they stand there, also those that
// are of no type of ours.
using JsonDefaults = nlohmann::ordered_json;

// Nothing where the text is not one JSON object in well-formed UTF-8, or is nested deeper than
// anyone would write it.
[[nodiscard]] std::optional<JsonDefaults> parseDefaults(std::string_view text);
// Numbers that JSON cannot hold are written as null, ill-formed text with replacement characters.
[[nodiscard]] std::string textOf(const JsonDefaults& defaults);

[[nodiscard]] std::optional<DefaultsValue> valueOf(const JsonDefaults& json);
[[nodiscard]] JsonDefaults jsonOf(const DefaultsValue& value);

}  // namespace orvane::host
