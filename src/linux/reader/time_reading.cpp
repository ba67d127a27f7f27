#include "linux/reader/time_reading.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace orvane::ical {

const Zone& TimeReading::zoneOf(const ItemTime& time) const {
  if (time.kind == ItemTime::Kind::utc) return utc_;
  return time.kind == ItemTime::Kind::zoned ? time.zone->zone : local_;
}

Instant TimeReading::instantOf(const ItemTime& time) const { return instantAfter(time, 0, 0); }

Instant TimeReading::instantAfter(const ItemTime& time, std::int64_t days,
                                  std::int64_t seconds) const {
  const WallTime wall = time.time + days * kSecondsPerDay;
  if (time.isDate()) return local_.startOfDay(dayOf(wall)) + seconds;
  return zoneOf(time).instantOf(wall) + seconds;
}

ExpansionRange TimeReading::timesOn(const ItemTime& of, Instant from, Instant to) const {
  const Zone& zone = zoneOf(of);
  // No change moves a clock by more than a day.
  const auto offsetsNear = [&zone](Instant instant) {
    return std::minmax({zone.offsetAt(instant - kSecondsPerDay), zone.offsetAt(instant),
                        zone.offsetAt(instant + kSecondsPerDay)});
  };
  const std::int64_t margin = of.isDate() ? kSecondsPerDay : 0;
  const auto bounded = [](WallTime time) { return std::clamp(time, kFirstTime, kBehindLastTime); };
  return {bounded(from + offsetsNear(from).first - margin),
          bounded(to + offsetsNear(to).second + margin)};
}

WallTime TimeReading::onClockOf(const ItemTime& of, const ItemTime& time) const {
  if (of.isDate()) return dayMeantBy(time);
  // A floating time or date beside times of a zone is meant to be of that zone.
  const bool isUnplaced = time.isDate() || time.kind == ItemTime::Kind::floating;
  return isUnplaced ? time.time : zoneOf(of).wallTime(instantOf(time));
}

WallTime TimeReading::dayMeantBy(const ItemTime& time) const {
  if (time.kind == ItemTime::Kind::utc) {
    const WallTime here = local_.wallTime(time.time);
    if (secondOfDay(here) == 0) return here;
  }
  return startOfDay(time.time);
}

WallTime TimeReading::lastTime(const RecurrenceRule::Until& until, const ItemTime& start) const {
  const auto kind = until.isDate  ? ItemTime::Kind::date
                    : until.isUtc ? ItemTime::Kind::utc
                                  : ItemTime::Kind::floating;
  const WallTime time = onClockOf(start, {until.time, kind, nullptr});
  return until.isDate && !start.isDate() ? time + kSecondsPerDay - 1 : time;
}

std::string dateText(WallTime day) { return floatingText(day).substr(0, 8); }

std::string floatingText(WallTime time) {
  const auto date = civilDate(dayOf(time));
  const int second = static_cast<int>(secondOfDay(time));
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%04d%02u%02uT%02d%02d%02d",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), second / 3600, second / 60 % 60, second % 60);
  return text.data();
}

std::string utcText(Instant instant) { return floatingText(instant) + "Z"; }

}  // namespace orvane::ical
