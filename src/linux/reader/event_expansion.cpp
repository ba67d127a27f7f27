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
                 const Window& window, std::size_t most)
      : family_(family), times_(times), window_(window), most_(most), series_(anchor, times) {
    isRecurring_ = !family.overrides.empty() || (family.master && family.master->recurs());
    if (family.master) forms_.emplace(kBeforeAll, OccurrenceForm(*family.master, times));
    for (const CalendarItem& item : family.overrides) addOverride(item);
  }

  std::optional<std::vector<wire::EventOccurrence>> expand(StepBudget& budget, Crowd crowd) {
    for (const auto& [key, form] : replaced_) {
      if (!form.isCancelled()) add(form, form.spanAt(originals_.at(key)), key);
    }
    if (family_.master) visitSeries(budget);
    if (found_.size() > most_ && crowd == Crowd::dropped) return std::nullopt;
    std::stable_sort(found_.begin(), found_.end(), [](const Occurrence& a, const Occurrence& b) {
      return a.span.start < b.span.start;
    });
    if (found_.size() > most_) found_.resize(most_);
    std::vector<wire::EventOccurrence> events;
    events.reserve(found_.size());
    for (const Occurrence& occurrence : found_) events.push_back(eventOf(occurrence));
    return events;
  }

 private:
  struct Occurrence {
    const OccurrenceForm* form = nullptr;
    OccurrenceForm::Span span;
    Series::Key key = 0;
  };

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
    // Only overrides may lie on other clocks and be moved.
    std::int64_t reach = forms_.size() > 1 ? kClockMargin : 0;
    std::int64_t longest = 0;
    for (const auto& [key, form] : forms_) {
      if (forms_.size() > 1) reach = std::max(reach, form.farthestShift() + kClockMargin);
      longest = std::max(longest, form.longest());
    }
    const ExpansionRange range = times_.timesOn(
        *family_.master->start, window_.start - reach - longest, window_.end + reach);
    series_.visitPlaces(range, budget, [&](const AddedTime& place, Series::Key key) {
      visitPlace(place, key);
      return found_.size() <= most_;
    });
  }

  void visitPlace(const AddedTime& place, Series::Key key) {
    if (replaced_.contains(key)) return;
    if (!replacedDays_.empty() && replacedDays_.contains(series_.dayOfPlace(place.start))) return;
    const OccurrenceForm& form = std::prev(forms_.upper_bound(key))->second;
    if (form.isCancelled()) return;
    const auto span = form.spanOf(place);
    if (window_.overlaps(span.start, span.end) && seen_.insert(key).second) add(form, span, key);
  }

  void add(const OccurrenceForm& form, OccurrenceForm::Span span, Series::Key key) {
    if (window_.overlaps(span.start, span.end)) found_.push_back({&form, span, key});
  }

  [[nodiscard]] wire::EventOccurrence eventOf(const Occurrence& occurrence) const {
    wire::EventOccurrence event;
    event.recurrenceId = isRecurring_ ? series_.identifierOf(occurrence.key) : "";
    event.title = occurrence.form->title();
    event.start = static_cast<double>(occurrence.span.start);
    event.end = static_cast<double>(occurrence.span.end);
    event.isAllDay = occurrence.form->isAllDay();
    return event;
  }

  const ItemFamily& family_;
  const TimeReading& times_;
  const Window& window_;
  std::size_t most_;
  Series series_;
  bool isRecurring_ = false;
  std::map<Series::Key, OccurrenceForm> forms_;     // which holds from which place on
  std::map<Series::Key, OccurrenceForm> replaced_;  // at a single place
  std::map<Series::Key, ItemTime> originals_;
  std::set<WallTime> replacedDays_;  // of overrides that name a day only
  std::unordered_set<Series::Key> seen_;
  std::vector<Occurrence> found_;
};

}  // namespace

std::optional<std::vector<wire::EventOccurrence>> expandEvent(const ItemFamily& family,
                                                              const TimeReading& times,
                                                              const Window& window,
                                                              StepBudget& budget, std::size_t most,
                                                              Crowd crowd) {
  const std::vector<wire::EventOccurrence> none;
  const bool isAlone = !family.master;
  if (isAlone && family.overrides.empty()) return none;
  if (!isAlone &&
      (!family.master->start || family.master->status == CalendarItem::Status::cancelled)) {
    return none;
  }
  CalendarItem anchor = isAlone ? family.overrides.front() : *family.master;
  // Without the master its places are known from the overrides alone.
  if (isAlone) anchor.start = anchor.recurrenceId;
  auto events = EventExpansion(family, anchor, times, window, most).expand(budget, crowd);
  if (!events) return std::nullopt;
  for (auto& event : *events) event.uid = isAlone ? anchor.uid : family.master->uid;
  return events;
}

}  // namespace orvane::ical
