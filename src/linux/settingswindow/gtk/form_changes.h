#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/form.h"

namespace orvane::window {

// What a window that shows one form has to touch in order to show another. What is not named stays
// as it is, with its focus, its cursor and its place.
struct FormChanges {
  // Other tabs, controls, texts or sizes: the window's content has to be made anew, and the rest of
  // this says nothing.
  bool isAnotherForm = false;
  std::optional<std::string> selectedTab;
  std::vector<FormControl> controls;  // of which only values and enabled flags are new

  [[nodiscard]] bool isNothing() const {
    return !isAnotherForm && !selectedTab && controls.empty();
  }
  friend bool operator==(const FormChanges&, const FormChanges&) = default;
};

[[nodiscard]] FormChanges changesBetween(const Form& shown, const Form& next);

}  // namespace orvane::window
