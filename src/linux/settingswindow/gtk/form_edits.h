#pragma once

#include <string_view>

#include "platform/form.h"

namespace orvane::window {

// The form with what the user did in place, as far as the control that was touched shows it by
// itself. What follows from it for other controls, only the form's owner knows. An edit that names
// no control, or has a value of another type, changes nothing.
[[nodiscard]] Form edited(Form form, const FormEdit& edit);

// The control with this key, or the list that has a row or button with it; null where there is
// none.
[[nodiscard]] FormControl* controlOf(Form& form, std::string_view key);
[[nodiscard]] const FormControl* controlOf(const Form& form, std::string_view key);

}  // namespace orvane::window
