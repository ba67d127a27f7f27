#include "linux/reader/event_expansion.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_set>

#include "linux/reader/occurrence_form.h"
#include "linux/reader/series.h"

namespace orvane::ical {

namespace {

// Clocks differ by no more than this from place to place and from season to season.
constexpr std::int64_t kClockMargin = 2 * kSecondsPerDay;

class EventExpansion {
 public:
  EventExpansion(const ItemFamily& family, const CalendarItem& anchor, const TimeReading& times,
                 const Window& window)
      : family_(family), times_(times), window_(window), series_(anchor, times) {
    isRecurring_ = !family.overrides.empty() || (family.master && family.master->recurs());
    if (family.master) forms_.emplace(kBeforeAll, OccurrenceForm(*family.master, times));
    for (const CalendarItem& item : family.overrides) addOverride(item);
  }

  std::vector<wire::EventOccurrence> expand(StepBudget& budget) {
    for (const auto& [key, form] : replaced_) {
      if (!form.isCancelled()) add(form, form.spanAt(originals_.at(key)), key);
    }
    if (family_.master) visitSeries(budget);
    std::stable_sort(events_.begin(), events_.end(),
                     [](const auto& a, const auto& b) { return a.start < b.start; });
    if (events_.size() > kMostOccurrences) events_.resize(kMostOccurrences);
    return std::move(events_);
  }

 private:
  static constexpr Series::Key kBeforeAll = kFirstTime * 2;

  void addOverride(const CalendarItem& item) {
    const ItemTime original = *item.recurrenceId;
    CalendarItem placed = item;
    if (!placed.start) placed.start = original;
    const OccurrenceForm form(placed, times_);
    const auto meant = series_.keyMeantBy(original);
    const Series::Key key = meant ? *meant : series_.keyOf(original);
    if (!meant) replacedDays_.insert(series_.dayOfPlace(original));
    replaced_.insert_or_assign(key, form);
    originals_.insert_or_assign(key, original);
    if (item.isForThisAndFuture) forms_.insert_or_assign(key, form);
  }

  void visitSeries(StepBudget& budget) {
    std::int64_t reach = kClockMargin;
    std::int64_t longest = 0;
    for (const auto& [key, form] : forms_) {
      reach = std::max(reach, form.farthestShift() + kClockMargin);
      longest = std::max(longest, form.longest());
    }
    const ExpansionRange range{std::max(kFirstTime, window_.start - reach - longest),
                               std::min(kBehindLastTime, window_.end + reach)};
    std::size_t found = 0;
    series_.visitPlaces(range, budget, [&](const AddedTime& place, Series::Key key) {
      if (visitPlace(place, key)) ++found;
      return found < 2 * kMostOccurrences;
    });
  }

  // Whether an occurrence came of it.
  bool visitPlace(const AddedTime& place, Series::Key key) {
    if (replaced_.contains(key)) return false;
    if (!replacedDays_.empty() && replacedDays_.contains(series_.dayOfPlace(place.start))) {
      return false;
    }
    const OccurrenceForm& form = std::prev(forms_.upper_bound(key))->second;
    if (form.isCancelled()) return false;
    const auto span = form.spanOf(place);
    if (!window_.overlaps(span.start, span.end) || !seen_.insert(key).second) return false;
    return add(form, span, key);
  }

  bool add(const OccurrenceForm& form, OccurrenceForm::Span span, Series::Key key) {
    if (!window_.overlaps(span.start, span.end)) return false;
    wire::EventOccurrence event;
    event.recurrenceId = isRecurring_ ? series_.identifierOf(key) : "";
    event.title = form.title();
    event.start = static_cast<double>(span.start);
    event.end = static_cast<double>(span.end);
    event.isAllDay = form.isAllDay();
    events_.push_back(std::move(event));
    return true;
  }

  const ItemFamily& family_;
  const TimeReading& times_;
  const Window& window_;
  Series series_;
  bool isRecurring_ = false;
  std::map<Series::Key, OccurrenceForm> forms_;     // which holds from which place on
  std::map<Series::Key, OccurrenceForm> replaced_;  // at a single place
  std::map<Series::Key, ItemTime> originals_;
  std::set<WallTime> replacedDays_;  // of overrides that name a day only
  std::unordered_set<Series::Key> seen_;
  std::vector<wire::EventOccurrence> events_;
};

}  // namespace

std::vector<wire::EventOccurrence> expandEvent(const ItemFamily& family, const TimeReading& times,
                                               const Window& window, StepBudget& budget) {
  const bool isAlone = !family.master;
  if (isAlone && family.overrides.empty()) return {};
  if (!isAlone &&
      (!family.master->start || family.master->status == CalendarItem::Status::cancelled)) {
    return {};
  }
  CalendarItem anchor = isAlone ? family.overrides.front() : *family.master;
  // Without the master its places are known from the overrides alone.
  if (isAlone) anchor.start = anchor.recurrenceId;
  auto events = EventExpansion(family, anchor, times, window).expand(budget);
  for (auto& event : events) event.uid = isAlone ? anchor.uid : family.master->uid;
  return events;
}

}  // namespace orvane::ical
