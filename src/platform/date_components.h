#pragma once

#include <optional>
#include <string>

namespace orvane {

// A date or a date with a time of day as a person wrote it down, before any zone made an instant of
// it. Absent fields were not written.
struct DateComponents {
  // The calendar system that the fields count in, as a CLDR name ("gregorian"); without one the
  // components denote no instant of their own.
  std::optional<std::string> calendar;
  // An IANA zone name; without one the fields are local time, wherever the reader is.
  std::optional<std::string> timeZone;
  std::optional<int> year;
  std::optional<int> month;  // 1…12
  std::optional<int> day;    // 1…31
  std::optional<int> hour;
  std::optional<int> minute;
  std::optional<int> second;

  friend bool operator==(const DateComponents&, const DateComponents&) = default;
};

}  // namespace orvane
