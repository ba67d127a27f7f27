#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "linux/reader/wall_time.h"

namespace orvane::ical {

// A DATE or DATE-TIME value as it stands in the text, before any zone makes an instant of it.
struct DateValue {
  WallTime time = 0;
  bool isDate = false;
  bool isUtc = false;
};

// "20261120" or "20261120T094100" with or without "Z"; nothing when it is neither or such a day or
// time does not exist.
std::optional<DateValue> parseDateValue(std::string_view text);

// Whether these are numbers of a real day in the years 1…9999, and then which. A second 60 counts
// as 59, because clocks on the wall do not show it.
std::optional<WallTime> wallTimeOf(int year, int month, int day, int hour, int minute, int second);

// "+0100" or "-003015" in seconds.
std::optional<std::int64_t> parseOffset(std::string_view text);

}  // namespace orvane::ical
