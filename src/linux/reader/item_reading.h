#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "linux/reader/calendar_item.h"
#include "linux/reader/text_encoding.h"

namespace orvane::ical {

// Titles and identifiers are cut to what anybody could want of them.
inline constexpr std::size_t kLongestTitle = 1000;  // code points
inline constexpr std::size_t kLongestUid = 255;     // bytes

// Reads one component (from BEGIN to END) of the numbered VCALENDAR of a file. An item without a
// UID gets one that depends on its text only. Nothing when the text is no component at all.
std::optional<CalendarItem> readItem(std::string_view text, TextEncoding encoding, int calendar,
                                     FileZones& zones);

// As it comes back from readItem.
std::string boundedUid(std::string uid);

}  // namespace orvane::ical
