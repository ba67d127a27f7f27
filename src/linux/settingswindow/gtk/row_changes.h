#pragma once

#include <cstddef>
#include <vector>

#include "platform/form.h"

namespace orvane::window {

// Some neighbouring rows of a list, in whose place others come. The position is that in the list as
// the replacements before it left it.
struct RowReplacement {
  std::size_t position = 0;
  std::size_t removed = 0;
  std::vector<FormRow> inserted;
  friend bool operator==(const RowReplacement&, const RowReplacement&) = default;
};

// What turns one list into the other, in order. Rows of the same key stay where they can, whatever
// their label and state; afterwards both lists have the same keys in the same order.
[[nodiscard]] std::vector<RowReplacement> replacementsBetween(const std::vector<FormRow>& shown,
                                                              const std::vector<FormRow>& next);

}  // namespace orvane::window
