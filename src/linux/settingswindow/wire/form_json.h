#pragma once

#include <nlohmann/json.hpp>

#include "linux/settingswindow/wire/json_fields.h"
#include "platform/form.h"

namespace orvane::formwire {

// Whether a form has no more of anything than the wire carries.
[[nodiscard]] bool isWithinLimits(const Form& form);

[[nodiscard]] nlohmann::json jsonOf(const Form& form);
[[nodiscard]] Form readForm(const JsonReader& in);

[[nodiscard]] nlohmann::json jsonOf(const FormEdit& edit);
[[nodiscard]] FormEdit readEdit(const JsonReader& in);

[[nodiscard]] nlohmann::json jsonOf(const Size& size);
[[nodiscard]] Size readSize(const JsonReader& in);

// The longest length that a form may ask for, in points.
inline constexpr double kLongestLength = 100'000;

}  // namespace orvane::formwire
