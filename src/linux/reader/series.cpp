#include "linux/reader/series.h"

#include <algorithm>

namespace orvane::ical {

namespace {

constexpr std::size_t kMostExcludedByRules = 200'000;

}  // namespace

Series::Series(const CalendarItem& item, const TimeReading& times) : item_(item), times_(times) {
  for (const ItemTime& excluded : item.excludedTimes) {
    if (const auto key = keyMeantBy(excluded)) {
      excludedKeys_.insert(*key);
    } else {
      excludedDays_.insert(dayOfPlace(excluded));
    }
  }
}

ItemTime Series::placeAt(WallTime time) const {
  ItemTime place = *item_.start;
  place.time = time;
  return place;
}

Series::Key Series::keyOf(const ItemTime& place) const {
  return item_.start->isDate() ? times_.dayMeantBy(place) : times_.instantOf(place);
}

std::optional<Series::Key> Series::keyMeantBy(const ItemTime& time) const {
  if (item_.start->isDate()) return times_.dayMeantBy(time);
  const WallTime onOwnClock = times_.onClockOf(*item_.start, time);
  if (time.isDate() || isMidnightForDay(onOwnClock)) return std::nullopt;
  return keyOf(placeAt(onOwnClock));
}

// Outlook writes the midnight of the day in place of the time.
bool Series::isMidnightForDay(WallTime time) const {
  if (secondOfDay(time) != 0 || secondOfDay(item_.start->time) == 0) return false;
  return std::all_of(item_.rules.begin(), item_.rules.end(), [](const RecurrenceRule& rule) {
    return rule.frequency >= Frequency::daily && rule.byHour.empty() && rule.byMinute.empty();
  });
}

WallTime Series::dayOfPlace(const ItemTime& place) const {
  return startOfDay(times_.onClockOf(*item_.start, place));
}

std::string Series::identifierOf(Key key) const {
  switch (item_.start->kind) {
    case ItemTime::Kind::date:
      return dateText(key);
    case ItemTime::Kind::floating:
      return floatingText(times_.onClockOf(*item_.start, {key, ItemTime::Kind::utc, nullptr}));
    default:
      return utcText(key);
  }
}

bool Series::isExcluded(const ItemTime& place, Key key) const {
  return excludedKeys_.contains(key) ||
         (!excludedDays_.empty() && excludedDays_.contains(dayOfPlace(place)));
}

void Series::expand(const RecurrenceRule& rule, ExpansionRange range, StepBudget& budget,
                    const VisitTime& visit) const {
  std::optional<WallTime> until;
  if (rule.until) until = times_.lastTime(*rule.until, *item_.start);
  const bool isOfDates = item_.start->isDate();
  expandRule(isOfDates ? ruleOfDates(rule) : rule, item_.start->time, until, range, budget, visit);
}

// What rules take away, up to the returned time; of what lies behind it nothing is known when
// there is too much of it.
WallTime Series::findTakenByRules(ExpansionRange range, StepBudget& budget,
                                  std::unordered_set<Key>& taken) const {
  WallTime knownTo = range.to;
  for (const RecurrenceRule& rule : item_.excludedRules) {
    std::size_t left = kMostExcludedByRules;
    WallTime last = range.from;
    expand(rule, range, budget, [&](WallTime time) {
      taken.insert(keyOf(placeAt(time)));
      last = time;
      return --left > 0;
    });
    if (left == 0 || budget.left() == 0) knownTo = std::min(knownTo, last);
  }
  return knownTo;
}

void Series::visitPlaces(ExpansionRange range, StepBudget& budget, const Visit& visit) const {
  std::unordered_set<Key> takenByRules;
  range.to = findTakenByRules(range, budget, takenByRules);
  const auto visitUnlessExcluded = [&](const AddedTime& place) {
    const Key key = keyOf(place.start);
    if (isExcluded(place.start, key)) return true;
    if (!takenByRules.empty() && takenByRules.contains(key)) return true;
    return visit(place, key);
  };
  const auto visitTime = [&](WallTime time) {
    return visitUnlessExcluded({placeAt(time), {}, {}});
  };
  for (const RecurrenceRule& rule : item_.rules) expand(rule, range, budget, visitTime);
  const WallTime start = item_.start->time;
  if (item_.rules.empty() && start >= range.from && start < range.to) visitTime(start);
  for (const AddedTime& added : item_.addedTimes) {
    if (!budget.take()) return;
    visitUnlessExcluded(added);
  }
}

}  // namespace orvane::ical
