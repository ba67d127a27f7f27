#pragma once

#include <cmath>
#include <functional>
#include <map>
#include <optional>
#include <utility>

#include "fakes/civil_time.h"
#include "platform/calendar.h"

namespace orvane::fakes {

// A Gregorian calendar at a fixed distance from UTC, with clock changes where a test wants them.
// The zone "UTC" is known by name; every other name means local time.
class FixedCalendar final : public Calendar {
 public:
  explicit FixedCalendar(std::function<Date()> now, double offsetFromUTC = 0)
      : now_(std::move(now)), firstOffset_(offsetFromUTC) {}

  // From `instant` on, local time is UTC plus `offset` seconds.
  void changeOffset(Date instant, double offset) { changes_[instant.secondsSince1970] = offset; }
  // Makes dateByAddingDays() answer nothing.
  void setCannotAddDays(bool cannot) { cannotAddDays_ = cannot; }
  // The instant of a local time; one that a clock change skips is moved forward.
  [[nodiscard]] Date at(const CivilTime& local) const { return instantOf(secondsOf(local)); }

  [[nodiscard]] Date startOfDay(Date date) const override {
    return instantOf(std::floor(localOf(date) / 86400.0) * 86400.0);
  }
  [[nodiscard]] std::optional<Date> dateByAddingDays(int days, Date date) const override {
    if (cannotAddDays_) return std::nullopt;
    return instantOf(localOf(date) + days * 86400.0);
  }
  [[nodiscard]] bool isDateInToday(Date date) const override {
    return startOfDay(date) == startOfDay(now_());
  }
  [[nodiscard]] std::optional<Date> date(const DateComponents& components) const override {
    if (!components.year) return std::nullopt;
    const double local = secondsOf({*components.year, components.month.value_or(1),
                                    components.day.value_or(1), components.hour.value_or(0),
                                    components.minute.value_or(0), components.second.value_or(0)});
    return components.timeZone == "UTC" ? Date{local} : instantOf(local);
  }
  [[nodiscard]] std::optional<Date> dateOfComponents(
      const DateComponents& components) const override {
    return components.calendar ? date(components) : std::nullopt;
  }

 private:
  [[nodiscard]] double offsetAt(double instant) const {
    auto after = changes_.upper_bound(instant);
    return after == changes_.begin() ? firstOffset_ : std::prev(after)->second;
  }
  [[nodiscard]] double localOf(Date date) const {
    return date.secondsSince1970 + offsetAt(date.secondsSince1970);
  }
  [[nodiscard]] Date instantOf(double local) const {
    const double beforeAnyNearbyChange = offsetAt(local - 2 * 86400.0);
    const double early = local - beforeAnyNearbyChange;
    if (offsetAt(early) == beforeAnyNearbyChange) return {early};
    const double late = local - offsetAt(early);
    return {offsetAt(late) == offsetAt(early) ? late : early};
  }

  std::function<Date()> now_;
  double firstOffset_;
  std::map<double, double> changes_;
  bool cannotAddDays_ = false;
};

}  // namespace orvane::fakes
