#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "linux/reader/recurrence_rule.h"
#include "linux/reader/zone_names.h"

namespace orvane::ical {

// A time as an item gives it. Only together with the zone of the place where it is read is it an
// instant, see TimeReading.
struct ItemTime {
  enum class Kind { date, floating, utc, zoned };
  WallTime time = 0;  // of a date its midnight
  Kind kind = Kind::floating;
  const ItemZone* zone = nullptr;  // of a zoned time; belongs to the file's zones

  [[nodiscard]] bool isDate() const { return kind == Kind::date; }
};

// Days follow the calendar and may have 23 hours; seconds are exact (RFC 5545 section 3.3.6).
struct ItemDuration {
  std::int64_t days = 0;
  std::int64_t seconds = 0;
};

// A time that RDATE adds to a series, with an end of its own when it was given as a period.
struct AddedTime {
  ItemTime start;
  std::optional<ItemTime> end;
  std::optional<ItemDuration> duration;
};

// What a VEVENT or VTODO says, as far as we ask. What cannot be understood is as if absent.
struct CalendarItem {
  enum class Status { open, cancelled, completed };

  std::string uid;
  std::optional<std::string> title;
  Status status = Status::open;
  std::int64_t sequence = 0;
  std::int64_t priority = 0;
  std::optional<ItemTime> start;
  std::optional<ItemTime> end;  // DTEND of an event, DUE of a task
  std::optional<ItemDuration> duration;
  std::vector<RecurrenceRule> rules;
  std::vector<RecurrenceRule> excludedRules;
  std::vector<AddedTime> addedTimes;
  std::vector<ItemTime> excludedTimes;
  std::optional<ItemTime> recurrenceId;
  bool isForThisAndFuture = false;

  [[nodiscard]] bool recurs() const { return !rules.empty() || !addedTimes.empty(); }
};

}  // namespace orvane::ical
