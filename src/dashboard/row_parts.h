#pragma once

#include <optional>
#include <string>

#include "dashboard/card_environment.h"
#include "foundation/date.h"
#include "view/view.h"

namespace orvane {

// What the rows of events and of reminders have in common.

// Between a row's leading element and its texts.
inline constexpr double rowLeadingSpacing = 12;

// The title, and at the end of its first line how long it is until the date, where there is one.
[[nodiscard]] View rowTitle(const std::string& title, std::optional<Date> date, Date now,
                            const CardEnvironment& environment);
// A piece of the second line.
[[nodiscard]] View rowDetail(const std::string& detail, const CardEnvironment& environment);
[[nodiscard]] View rowTexts(View title, View detail);

}  // namespace orvane
