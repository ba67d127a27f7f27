#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "dashboard/card_environment.h"
#include "dashboard/panel_header.h"
#include "view/view.h"

namespace orvane {

// What the cards of events and of reminders have in common.

// A header over a list, or over what stands in for it.
[[nodiscard]] View listCard(const PanelHeader& header, View list,
                            const CardEnvironment& environment);

// The first `most` of the records, each as the row that `rowOf` makes of it.
template <class Records, class RowOf>
View firstRows(const Records& records, std::size_t most, RowOf rowOf) {
  std::vector<View> rows;
  rows.reserve(std::min(records.size(), most));
  for (std::size_t index = 0; index < std::min(records.size(), most); ++index) {
    rows.push_back(rowOf(records[index]));
  }
  return vstack({HorizontalAlignment::leading, 12}, std::move(rows));
}

}  // namespace orvane
