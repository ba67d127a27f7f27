#include "linux/reader/task_reading.h"

#include <algorithm>
#include <map>
#include <set>

#include "linux/reader/due_components.h"
#include "linux/reader/series.h"

namespace orvane::ical {

namespace {

// The Gregorian calendar repeats itself after so many days: what does not take place in them never
// does.
constexpr std::int64_t kCalendarCycle = 146'097 * kSecondsPerDay;

bool isOpen(const CalendarItem& item) { return item.status == CalendarItem::Status::open; }

// DUE, or what DTSTART and DURATION make together; DTSTART alone is no due date.
std::optional<ItemTime> dueOf(const CalendarItem& item, const TimeReading& times) {
  if (item.end) return item.end;
  if (!item.start || !item.duration) return std::nullopt;
  ItemTime due = *item.start;
  if (due.isDate()) {
    const std::int64_t days = floorDivide(item.duration->seconds, kSecondsPerDay);
    due.time += (item.duration->days + days) * kSecondsPerDay;
    return due;
  }
  const ItemTime utc{times.instantAfter(due, item.duration->days, item.duration->seconds),
                     ItemTime::Kind::utc, nullptr};
  due.time = times.onClockOf(due, utc);
  return due;
}

wire::OpenTask taskOf(const CalendarItem& item, const std::optional<ItemTime>& due,
                      const TimeReading& times) {
  wire::OpenTask task;
  task.uid = item.uid;
  task.title = item.title;
  if (due) task.due = dueComponents(*due, times);
  task.priority = item.priority;
  return task;
}

// Finds the earliest open occurrence of a recurring task.
class OpenOccurrence {
 public:
  // `anchor` is the master with a start, which stands for its first due date when it has none.
  OpenOccurrence(const CalendarItem& anchor, const std::vector<CalendarItem>& overrides,
                 const TimeReading& times)
      : anchor_(anchor), times_(times), series_(anchor, times) {
    for (const CalendarItem& item : overrides) addOverride(item);
  }

  std::optional<wire::OpenTask> find(StepBudget& budget) {
    Series::Key from = kFirstTime - kSecondsPerDay;
    const CalendarItem* form = &anchor_;
    for (const auto& [key, laterForm] : laterForms_) {
      findIn(*form, rangeOf(from, key), budget);
      from = key;
      form = laterForm;
    }
    findIn(*form, rangeOf(from, kBehindLastTime), budget);
    if (!best_) return std::nullopt;
    return std::move(best_->task);
  }

 private:
  struct Candidate {
    Instant when = 0;
    wire::OpenTask task;
  };

  // The places from one key to another, and perhaps a few more.
  [[nodiscard]] ExpansionRange rangeOf(Series::Key from, Series::Key to) const {
    const bool isDate = anchor_.start->isDate();
    auto range = isDate ? ExpansionRange{from, to} : times_.timesOn(*anchor_.start, from, to);
    range.to = std::min(range.to, std::max(range.from, anchor_.start->time) + kCalendarCycle);
    return range;
  }

  // The earliest place at which the form holds; none when it is not an open one.
  void findIn(const CalendarItem& form, ExpansionRange range, StepBudget& budget) {
    if (!isOpen(form)) return;
    series_.visitPlaces(range, budget, [&](const AddedTime& place, Series::Key key) {
      const Instant when = times_.instantOf(place.start);
      if (best_ && when >= best_->when) return false;
      if (&formAt(key) != &form || isReplaced(place, key)) return true;
      consider(when, taskOf(form, dueAt(form, place.start), times_));
      return false;
    });
  }

  [[nodiscard]] bool isReplaced(const AddedTime& place, Series::Key key) const {
    return replaced_.contains(key) || replacedDays_.contains(series_.dayOfPlace(place.start));
  }

  void addOverride(const CalendarItem& item) {
    const auto meant = series_.keyMeantBy(*item.recurrenceId);
    const Series::Key key = meant ? *meant : series_.keyOf(*item.recurrenceId);
    if (!meant) replacedDays_.insert(series_.dayOfPlace(*item.recurrenceId));
    replaced_.insert(key);
    if (item.isForThisAndFuture) laterForms_.insert_or_assign(key, &item);
    if (isOpen(item)) consider(whenOf(item), taskOf(item, dueOf(item, times_), times_));
  }

  // An occurrence that was put off takes place when it was put off to.
  [[nodiscard]] Instant whenOf(const CalendarItem& item) const {
    if (item.start) return times_.instantOf(*item.start);
    const auto due = dueOf(item, times_);
    return times_.instantOf(due ? *due : *item.recurrenceId);
  }

  void consider(Instant when, wire::OpenTask task) {
    if (best_ && best_->when <= when) return;
    task.uid = anchor_.uid;
    best_ = {when, std::move(task)};
  }

  [[nodiscard]] const CalendarItem& formAt(Series::Key key) const {
    const auto later = laterForms_.upper_bound(key);
    return later == laterForms_.begin() ? anchor_ : *std::prev(later)->second;
  }

  // The due date moves with the occurrence, on its own clock.
  [[nodiscard]] std::optional<ItemTime> dueAt(const CalendarItem& form,
                                              const ItemTime& place) const {
    auto due = dueOf(form, times_);
    if (!due) return std::nullopt;
    const ItemTime& origin = form.recurrenceId ? *form.recurrenceId : *anchor_.start;
    due->time += times_.onClockOf(*due, place) - times_.onClockOf(*due, origin);
    return due;
  }

  const CalendarItem& anchor_;
  const TimeReading& times_;
  Series series_;
  std::set<Series::Key> replaced_;
  std::set<WallTime> replacedDays_;
  std::map<Series::Key, const CalendarItem*> laterForms_;
  std::optional<Candidate> best_;
};

std::optional<wire::OpenTask> readAlone(const std::vector<CalendarItem>& overrides,
                                        const TimeReading& times) {
  CalendarItem anchor = overrides.front();
  anchor.start = anchor.recurrenceId;
  anchor.status = CalendarItem::Status::cancelled;  // only the overrides are there
  StepBudget none(0);
  return OpenOccurrence(anchor, overrides, times).find(none);
}

}  // namespace

std::optional<wire::OpenTask> readTask(const ItemFamily& family, const TimeReading& times,
                                       StepBudget& budget) {
  if (!family.master) {
    if (family.overrides.empty()) return std::nullopt;
    return readAlone(family.overrides, times);
  }
  CalendarItem anchor = *family.master;
  if (!isOpen(anchor)) return std::nullopt;
  const auto due = dueOf(anchor, times);
  if (!anchor.start) anchor.start = due;
  if (!anchor.recurs() || !anchor.start) return taskOf(anchor, due, times);
  return OpenOccurrence(anchor, family.overrides, times).find(budget);
}

}  // namespace orvane::ical
