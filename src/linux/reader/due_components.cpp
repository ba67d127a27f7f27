#include "linux/reader/due_components.h"

namespace orvane::ical {

namespace {

DateComponents componentsOf(WallTime time, bool hasTime, std::optional<std::string> timeZone) {
  const auto date = civilDate(dayOf(time));
  DateComponents components;
  components.calendar = "gregorian";
  components.timeZone = std::move(timeZone);
  components.year = static_cast<int>(date.year());
  components.month = static_cast<int>(static_cast<unsigned>(date.month()));
  components.day = static_cast<int>(static_cast<unsigned>(date.day()));
  if (hasTime) {
    const auto second = static_cast<int>(secondOfDay(time));
    components.hour = second / 3600;
    components.minute = second / 60 % 60;
    components.second = second % 60;
  }
  return components;
}

}  // namespace

DateComponents dueComponents(const ItemTime& due, const TimeReading& times) {
  if (due.isDate()) return componentsOf(due.time, false, std::nullopt);
  if (due.kind == ItemTime::Kind::floating) return componentsOf(due.time, true, std::nullopt);
  const Instant instant = times.instantOf(due);
  if (due.kind == ItemTime::Kind::zoned && due.zone->system) {
    const auto& system = *due.zone->system;
    const WallTime time = due.zone->zone.wallTime(instant);
    if (system.zone.instantOf(time) == instant) return componentsOf(time, true, system.ianaName);
  }
  return componentsOf(instant, true, "UTC");
}

}  // namespace orvane::ical
