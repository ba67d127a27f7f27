#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "linux/reader/calendar_item.h"
#include "linux/reader/time_reading.h"

namespace orvane::ical {

// How an item looks whenever it takes place: its title and how long it is, and, for an override
// that holds for all later occurrences too, how far it moves them.
class OccurrenceForm {
 public:
  struct Span {
    Instant start = 0;
    Instant end = 0;
  };

  // Of an item with a start.
  OccurrenceForm(const CalendarItem& item, const TimeReading& times);

  // Of an occurrence whose start in the series is `original`.
  [[nodiscard]] Span spanAt(const ItemTime& original) const;
  // Of an occurrence that RDATE gave an end of its own.
  [[nodiscard]] Span spanOf(const AddedTime& added) const;

  [[nodiscard]] const std::optional<std::string>& title() const { return title_; }
  [[nodiscard]] bool isAllDay() const { return start_.isDate(); }
  [[nodiscard]] bool isCancelled() const { return isCancelled_; }
  // In seconds, generously: how long before its end an occurrence may start, and how far it may
  // stand from its place in the series.
  [[nodiscard]] std::int64_t longest() const;
  [[nodiscard]] std::int64_t farthestShift() const;

 private:
  [[nodiscard]] ItemDuration lengthOf(const ItemTime& start, const std::optional<ItemTime>& end,
                                      const std::optional<ItemDuration>& duration) const;
  [[nodiscard]] Span spanFrom(const ItemTime& start, const ItemDuration& length) const;

  const TimeReading* times_;  // not owned; lives longer
  std::optional<std::string> title_;
  ItemTime start_;
  ItemDuration length_;
  std::int64_t shift_ = 0;  // on the clock of start_
  bool isCancelled_ = false;
};

}  // namespace orvane::ical
