#include "linux/locale/calendar.h"

#include <unicode/calendar.h>
#include <unicode/gregocal.h>

#include <cmath>
#include <iostream>
#include <map>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "linux/locale/icu_date.h"
#include "linux/locale/system_zone.h"

namespace orvane::host {
namespace {

using IcuCalendar = std::unique_ptr<icu::Calendar>;

Date fromIcu(UDate time) { return {time / 1000.0}; }

// Dates before 1582 are counted as if the Gregorian calendar had always been in use.
void countGregorianAlways(icu::Calendar& calendar) {
  UErrorCode status = U_ZERO_ERROR;
  if (auto* gregorian = dynamic_cast<icu::GregorianCalendar*>(&calendar)) {
    gregorian->setGregorianChange(-8.64e15, status);
  }
}

IcuCalendar makeIcuCalendar(std::unique_ptr<icu::TimeZone> zone, const std::string& system) {
  auto locale = icu::Locale("en_US");
  UErrorCode status = U_ZERO_ERROR;
  locale.setKeywordValue("calendar", system.c_str(), status);
  status = U_ZERO_ERROR;  // a name that ICU cannot even read counts as none
  IcuCalendar calendar(icu::Calendar::createInstance(zone.release(), locale, status));
  if (U_FAILURE(status)) throw std::runtime_error("no calendar data");
  countGregorianAlways(*calendar);
  calendar->setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
  calendar->setSkippedWallTimeOption(UCAL_WALLTIME_LAST);
  return calendar;
}

bool isIn(std::optional<int> field, int least, int most) {
  const int value = field.value_or(0);
  return least <= value && value <= most;
}

bool hasSensibleFields(const DateComponents& components) {
  return components.year && components.month && components.day && *components.month >= 1 &&
         *components.day >= 1 && isIn(components.year, -200000, 200000) &&
         isIn(components.hour, 0, 23) && isIn(components.minute, 0, 59) &&
         isIn(components.second, 0, 60);
}

std::optional<Date> instantOf(icu::Calendar& calendar, const DateComponents& components) {
  calendar.clear();
  calendar.setLenient(false);
  calendar.set(*components.year, *components.month - 1, *components.day);
  // The day alone is checked: a skipped time of day is no error but moves forward.
  UErrorCode status = U_ZERO_ERROR;
  calendar.set(UCAL_HOUR_OF_DAY, 12);
  calendar.getTime(status);
  if (U_FAILURE(status)) return std::nullopt;
  calendar.setLenient(true);
  calendar.set(*components.year, *components.month - 1, *components.day,
               components.hour.value_or(0), components.minute.value_or(0),
               components.second.value_or(0));
  const UDate time = calendar.getTime(status);
  if (U_FAILURE(status)) return std::nullopt;
  return fromIcu(time);
}

class IcuSystemCalendar final : public SystemCalendar {
 public:
  explicit IcuSystemCalendar(Region region) : region_(std::move(region)) { systemChanged(); }

  void systemChanged() override {
    auto zone = zoneOf(region_, region_.now());
    const bool fixed = isFixed(*zone);
    auto calendar = makeIcuCalendar(std::move(zone), "gregorian");
    const std::lock_guard lock(mutex_);
    if (fixed && !complained_) complain();
    calendar_ = std::move(calendar);
    today_ = {};
    zones_.clear();
  }

  [[nodiscard]] Date startOfDay(Date date) const override {
    const std::lock_guard lock(mutex_);
    return dayStart(date, 0);
  }
  [[nodiscard]] Date startOfNextDay(Date date) const override {
    const std::lock_guard lock(mutex_);
    return dayStart(date, 1);
  }

  [[nodiscard]] std::string timeZoneName() const override {
    icu::UnicodeString name;
    const std::lock_guard lock(mutex_);
    calendar_->getTimeZone().getID(name);
    std::string text;
    return name.toUTF8String(text);
  }

  [[nodiscard]] std::optional<Date> dateByAddingDays(int days, Date date) const override {
    if (!isUsable(date)) return std::nullopt;
    const std::lock_guard lock(mutex_);
    UErrorCode status = U_ZERO_ERROR;
    calendar_->setTime(toIcu(date), status);
    calendar_->add(UCAL_DATE, days, status);
    const Date result = fromIcu(calendar_->getTime(status));
    if (U_FAILURE(status) || !isUsable(result)) return std::nullopt;
    return result;
  }

  [[nodiscard]] bool isDateInToday(Date date) const override {
    const Date now = region_.now();
    const std::lock_guard lock(mutex_);
    // Asked for every item on every tick, so the bounds of the day are kept.
    if (!(today_.start <= now && now < today_.end)) today_ = {dayStart(now, 0), dayStart(now, 1)};
    return today_.start <= date && date < today_.end;
  }

  [[nodiscard]] std::optional<Date> date(const DateComponents& components) const override {
    if (!hasSensibleFields(components)) return std::nullopt;
    return instantOf(*calendarFor(components), components);
  }

  [[nodiscard]] std::optional<Date> dateOfComponents(
      const DateComponents& components) const override {
    if (!components.calendar) return std::nullopt;
    return date(components);
  }

 private:
  void complain() {
    std::cerr << "orvane: the system's time zone has rules that are not known here; its present "
                 "offset from UTC is kept\n";
    complained_ = true;
  }

  struct Day {
    Date start, end;
  };

  // The first instant of the day that is `days` after the one that holds `date`.
  [[nodiscard]] Date dayStart(Date date, int days) const {
    if (!isUsable(date)) return date;
    UErrorCode status = U_ZERO_ERROR;
    auto& calendar = *calendar_;
    calendar.setTime(toIcu(date), status);
    const int era = calendar.get(UCAL_ERA, status);
    const int year = calendar.get(UCAL_YEAR, status);
    const int month = calendar.get(UCAL_MONTH, status);
    const int day = calendar.get(UCAL_DATE, status);
    calendar.clear();
    calendar.set(UCAL_ERA, era);
    calendar.set(year, month, day + days, 0, 0, 0);
    // Where midnight is skipped, the day begins when the clocks have been moved.
    calendar.setSkippedWallTimeOption(UCAL_WALLTIME_NEXT_VALID);
    const UDate start = calendar.getTime(status);
    calendar.setSkippedWallTimeOption(UCAL_WALLTIME_LAST);
    return U_SUCCESS(status) ? fromIcu(start) : date;
  }

  [[nodiscard]] IcuCalendar calendarFor(const DateComponents& components) const {
    const std::lock_guard lock(mutex_);
    const auto* zone = components.timeZone ? zoneNamed(*components.timeZone) : nullptr;
    if (!zone) zone = &calendar_->getTimeZone();
    return makeIcuCalendar(std::unique_ptr<icu::TimeZone>(zone->clone()),
                           components.calendar.value_or("gregorian"));
  }

  // Finding out whether a zone's rules are up to date takes longer than everything else, and
  // thousands of items name the same few zones.
  [[nodiscard]] const icu::TimeZone* zoneNamed(const std::string& name) const {
    if (const auto known = zones_.find(name); known != zones_.end()) return known->second.get();
    if (zones_.size() >= kMostZones) zones_.clear();
    return (zones_[name] = namedZone(name, region_.system, region_.now())).get();
  }

  Region region_;
  mutable std::mutex mutex_;
  IcuCalendar calendar_;  // its fields are scratch space of the call at hand
  mutable Day today_;
  static constexpr std::size_t kMostZones = 64;
  mutable std::map<std::string, std::unique_ptr<icu::TimeZone>> zones_;  // null: not a zone
  bool complained_ = false;
};

}  // namespace

std::unique_ptr<SystemCalendar> makeCalendar(Region region) {
  return std::make_unique<IcuSystemCalendar>(std::move(region));
}

}  // namespace orvane::host
