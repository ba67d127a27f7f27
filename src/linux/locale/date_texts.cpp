#include "linux/locale/date_texts.h"

#include <unicode/smpdtfmt.h>

#include <cmath>

#include "linux/locale/icu_date.h"
#include "linux/locale/unicode_text.h"

namespace orvane::host {
namespace {

using Format = std::unique_ptr<icu::DateFormat>;
using Style = icu::DateFormat;

// Several screens full of rows; beyond it everything is formatted anew.
constexpr std::size_t kMostKept = 128;

Format fromSkeleton(const char* skeleton, const icu::Locale& locale) {
  UErrorCode status = U_ZERO_ERROR;
  Format format(icu::DateFormat::createInstanceForSkeleton(skeleton, locale, status));
  return U_SUCCESS(status) ? std::move(format) : nullptr;
}

icu::UnicodeString patternOf(const Format& format) {
  icu::UnicodeString pattern;
  if (const auto* simple = dynamic_cast<const icu::SimpleDateFormat*>(format.get())) {
    simple->toPattern(pattern);
  }
  return pattern;
}

// A medium date and a short time, joined as the locale joins a long date and a time ("… at …"). The
// locale's own long pattern has that joint in it: its date is exchanged for the medium one.
Format dateAtTime(const icu::Locale& locale) {
  Format joined(Style::createDateTimeInstance(Style::kLong, Style::kShort, locale));
  const Format longDate(Style::createDateInstance(Style::kLong, locale));
  const Format mediumDate(Style::createDateInstance(Style::kMedium, locale));
  auto pattern = patternOf(joined);
  const auto longPattern = patternOf(longDate);
  const auto mediumPattern = patternOf(mediumDate);
  const auto at = longPattern.isEmpty() ? -1 : pattern.indexOf(longPattern);
  auto* simple = dynamic_cast<icu::SimpleDateFormat*>(joined.get());
  if (!simple || at < 0 || mediumPattern.isEmpty()) {
    return Format(Style::createDateTimeInstance(Style::kMedium, Style::kShort, locale));
  }
  pattern.replace(at, longPattern.length(), mediumPattern);
  simple->applyPattern(pattern);
  return joined;
}

Format makeFormat(DateText kind, const icu::Locale& locale) {
  switch (kind) {
    case DateText::weekdayWide:
      return fromSkeleton("cccc", locale);
    case DateText::dateLong:
      return fromSkeleton("yMMMMd", locale);
    case DateText::dateAbbreviatedTimeShortened:
      return dateAtTime(locale);
    case DateText::timeShortened:
      return Format(Style::createTimeInstance(Style::kShort, locale));
  }
  return nullptr;
}

}  // namespace

DateTexts::DateTexts(const icu::Locale& locale, std::unique_ptr<icu::TimeZone> zone)
    : locale_(locale), zone_(std::move(zone)) {}

const std::string& DateTexts::text(DateText kind, Date date) {
  static const std::string none;
  if (!isUsable(date)) return none;
  const auto key = keyOf(kind, date);
  if (const auto found = kept_.find(key); found != kept_.end()) return found->second;
  if (kept_.size() >= kMostKept) kept_.clear();
  return kept_.emplace(key, format(kind, date)).first->second;
}

// Two dates have one text when they lie in the same local minute, or day where no time is shown.
DateTexts::Key DateTexts::keyOf(DateText kind, Date date) const {
  std::int32_t raw = 0, dst = 0;
  UErrorCode status = U_ZERO_ERROR;
  zone_->getOffset(toIcu(date), false, raw, dst, status);
  const bool dayOnly = kind == DateText::weekdayWide || kind == DateText::dateLong;
  const double local = date.secondsSince1970 + (raw + dst) / 1000.0;
  return {kind, static_cast<std::int64_t>(std::floor(local / (dayOnly ? 86400.0 : 60.0)))};
}

std::string DateTexts::format(DateText kind, Date date) {
  auto& format = formats_.at(static_cast<std::size_t>(kind));
  if (!format) {
    format = makeFormat(kind, locale_);
    if (format) format->setTimeZone(*zone_);
  }
  icu::UnicodeString text;
  if (format) format->format(toIcu(date), text);
  return toUtf8(text);
}

}  // namespace orvane::host
