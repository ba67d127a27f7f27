#include "linux/reader/occurrence_form.h"

#include <algorithm>
#include <cstdlib>

namespace orvane::ical {

OccurrenceForm::OccurrenceForm(const CalendarItem& item, const TimeReading& times)
    : times_(&times),
      title_(item.title),
      start_(*item.start),
      length_(lengthOf(*item.start, item.end, item.duration)),
      isCancelled_(item.status == CalendarItem::Status::cancelled) {
  if (item.recurrenceId) shift_ = start_.time - times.onClockOf(start_, *item.recurrenceId);
}

// Days for what takes whole days, else an exact number of seconds when the end is given, and what
// the duration says when it is not (RFC 5545 sections 3.6.1 and 3.8.5.3).
ItemDuration OccurrenceForm::lengthOf(const ItemTime& start, const std::optional<ItemTime>& end,
                                      const std::optional<ItemDuration>& duration) const {
  if (start.isDate()) {
    std::int64_t seconds = kSecondsPerDay;
    if (end) seconds = times_->dayMeantBy(*end) - start.time;
    if (!end && duration) seconds = duration->days * kSecondsPerDay + duration->seconds;
    return {std::max<std::int64_t>(1, ceilDivide(seconds, kSecondsPerDay)), 0};
  }
  if (end) {
    const std::int64_t seconds = times_->instantOf(*end) - times_->instantOf(start);
    return {0, std::max<std::int64_t>(0, seconds)};
  }
  return duration.value_or(ItemDuration{});
}

OccurrenceForm::Span OccurrenceForm::spanFrom(const ItemTime& start,
                                              const ItemDuration& length) const {
  const Instant begin = times_->instantOf(start);
  const Instant end = times_->instantAfter(start, length.days, length.seconds);
  return {begin, std::max(begin, end)};
}

OccurrenceForm::Span OccurrenceForm::spanAt(const ItemTime& original) const {
  ItemTime start = start_;
  start.time = times_->onClockOf(start_, original) + shift_;
  return spanFrom(start, length_);
}

OccurrenceForm::Span OccurrenceForm::spanOf(const AddedTime& added) const {
  if (!added.end && !added.duration) return spanAt(added.start);
  return spanFrom(added.start, lengthOf(added.start, added.end, added.duration));
}

std::int64_t OccurrenceForm::longest() const {
  const std::int64_t longerDays = length_.days > 0 ? kSecondsPerDay : 0;
  return std::max<std::int64_t>(0, length_.days * kSecondsPerDay + length_.seconds + longerDays);
}

std::int64_t OccurrenceForm::farthestShift() const { return std::abs(shift_); }

}  // namespace orvane::ical
