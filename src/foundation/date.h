// foundation/ holds what every other folder stands on: instants, colours, observation and
// coroutines. It is standard C++ only and knows nothing of calendars, windows or Linux.
#pragma once

#include <compare>

namespace orvane {

// A length of time in seconds; may be negative.
using TimeInterval = double;

// An absolute point in time: seconds since 1970-01-01T00:00:00Z, leap seconds not counted.
struct Date {
  double secondsSince1970 = 0;

  friend auto operator<=>(const Date&, const Date&) = default;
};

constexpr Date operator+(Date date, TimeInterval seconds) {
  return {date.secondsSince1970 + seconds};
}
constexpr Date operator-(Date date, TimeInterval seconds) {
  return {date.secondsSince1970 - seconds};
}
constexpr TimeInterval operator-(Date later, Date earlier) {
  return later.secondsSince1970 - earlier.secondsSince1970;
}

}  // namespace orvane
