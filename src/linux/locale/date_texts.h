#pragma once

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "foundation/date.h"

namespace orvane::host {

enum class DateText : std::uint8_t {
  weekdayWide,
  dateLong,
  dateAbbreviatedTimeShortened,
  timeShortened,
};

// The texts of dates in one locale and zone. Formatters are made when first needed, and texts are
// kept for as long as they are asked for again and again: a dashboard shows the same twenty every
// second. Not thread-safe.
class DateTexts {
 public:
  DateTexts(const icu::Locale& locale, std::unique_ptr<icu::TimeZone> zone);

  // Empty for a date beyond all calendars.
  [[nodiscard]] const std::string& text(DateText kind, Date date);

 private:
  static constexpr std::size_t kKinds = 4;
  using Key = std::pair<DateText, std::int64_t>;

  [[nodiscard]] Key keyOf(DateText kind, Date date) const;
  [[nodiscard]] std::string format(DateText kind, Date date);

  icu::Locale locale_;
  std::unique_ptr<icu::TimeZone> zone_;
  std::array<std::unique_ptr<icu::DateFormat>, kKinds> formats_;
  std::map<Key, std::string> kept_;
};

}  // namespace orvane::host
