#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/date.h"

namespace orvane {

// The user's current locale: texts of dates and numbers, and the order and case of texts. Dates are
// rendered in the current time zone. All texts are UTF-8; ill-formed input is treated as if each
// bad byte were U+FFFD. May be called from any thread.
class Locale {
 public:
  virtual ~Locale() = default;

  // The full name of the weekday: "Friday".
  [[nodiscard]] virtual std::string weekdayWide(Date date) const = 0;
  // Full month name, day and year in the locale's order: "November 20, 2026".
  [[nodiscard]] virtual std::string dateLong(Date date) const = 0;
  // Date style abbreviated, time style shortened: "Nov 20, 2026 at 9:41 AM".
  [[nodiscard]] virtual std::string dateAbbreviatedTimeShortened(Date date) const = 0;
  // Date omitted, time style shortened: "9:41 AM".
  [[nodiscard]] virtual std::string timeShortened(Date date) const = 0;
  // A whole number with the locale's digits and grouping: "1,234".
  [[nodiscard]] virtual std::string integer(std::int64_t number) const = 0;

  // Upper and lower case by the locale's rules (Turkish i, German ß).
  [[nodiscard]] virtual std::string lowercased(std::string_view text) const = 0;
  [[nodiscard]] virtual std::string uppercased(std::string_view text) const = 0;
  // Negative, zero or positive as `a` sorts before, with or after `b`, case not counting.
  [[nodiscard]] virtual int localizedCaseInsensitiveCompare(std::string_view a,
                                                            std::string_view b) const = 0;
  // Whether the locale's script runs from right to left.
  [[nodiscard]] virtual bool isRightToLeft() const = 0;
};

}  // namespace orvane
