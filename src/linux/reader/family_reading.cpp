#include "linux/reader/family_reading.h"

#include <algorithm>
#include <utility>

#include "linux/reader/item_reading.h"
#include "linux/reader/task_reading.h"

namespace orvane::ical {

namespace {

// What any item may take when everything else is spent: enough for one that was made by hand.
constexpr std::int64_t kLeastSteps = 400;
constexpr std::chrono::seconds kTimeOfAnItem{1};

bool isOlder(const CalendarItem& a, const CalendarItem& b) { return a.sequence < b.sequence; }

// An item that was revised stands for its former states (RFC 5545 section 3.8.7.4).
void keepNewest(std::vector<CalendarItem>& masters) {
  if (masters.size() < 2) return;
  const std::int64_t newest = std::max_element(masters.begin(), masters.end(), isOlder)->sequence;
  std::erase_if(masters, [newest](const CalendarItem& item) { return item.sequence < newest; });
}

// All that a person could tell two items of one UID apart by.
std::string lookOf(wire::EventOccurrence event) {
  event.uid.clear();
  wire::FileAnswer answer;
  answer.events.push_back(std::move(event));
  return wire::encode(answer);
}

std::string lookOf(wire::OpenTask task) {
  task.uid.clear();
  wire::FileAnswer answer;
  answer.tasks.push_back(std::move(task));
  return wire::encode(answer);
}

}  // namespace

// A family whose every member was read. More than one master means that the file holds different
// items of one UID.
struct FamilyReader::Members {
  std::vector<CalendarItem> masters;
  std::vector<CalendarItem> overrides;
};

Allowance::Allowance(const Limits& limits)
    : limits_(limits), stepsLeft_(limits.stepsOfAll), end_(processorTime() + limits.timeOfAll) {}

std::int64_t Allowance::stepsOfNext() const {
  return std::max(std::min(limits_.stepsOfAnItem, stepsLeft_), kLeastSteps);
}

StepBudget Allowance::grant() const { return StepBudget(stepsOfNext(), kTimeOfAnItem); }

void Allowance::settle(const StepBudget& granted) {
  stepsLeft_ -= stepsOfNext() - granted.left();
  if (processorTime() >= end_) stepsLeft_ = 0;
}

FamilyReader::Members FamilyReader::readMembers(const FamilySpans& spans) {
  Members members;
  for (const ComponentSpan& span : spans.spans) {
    const auto text = text_.substr(span.begin, span.end - span.begin);
    auto item = readItem(text, encoding_, span.calendar, zones_);
    if (!item) continue;
    (item->recurrenceId ? members.overrides : members.masters).push_back(std::move(*item));
  }
  keepNewest(members.masters);
  // Of two overrides of one occurrence the newer one comes last, and holds.
  std::stable_sort(members.overrides.begin(), members.overrides.end(), isOlder);
  return members;
}

FamilyAnswer FamilyReader::read(const FamilySpans& spans, Allowance& allowance) {
  answer_ = {};
  Members members = readMembers(spans);
  ItemFamily family;
  family.overrides = std::move(members.overrides);
  if (members.masters.empty()) addItem(spans.kind, family, allowance);
  comparesLooks_ = members.masters.size() > 1;
  for (std::size_t index = 0; index < members.masters.size(); ++index) {
    family.master = std::move(members.masters[index]);
    // Two items need two identifiers; the order in the file tells them apart.
    if (index > 0) family.master->uid += "#" + std::to_string(index + 1);
    addItem(spans.kind, family, allowance);
    family.overrides.clear();
  }
  looks_.clear();
  return std::move(answer_);
}

void FamilyReader::addItem(ComponentKind kind, const ItemFamily& family, Allowance& allowance) {
  StepBudget budget = allowance.grant();
  if (kind == ComponentKind::event) {
    addEvents(family, allowance.limits(), budget);
  } else if (auto task = readTask(family, place_.times, budget)) {
    if (!comparesLooks_ || isNew(lookOf(*task))) answer_.tasks.push_back(std::move(*task));
  }
  answer_.isCutShort = answer_.isCutShort || budget.left() == 0;
  allowance.settle(budget);
}

// What is not looked at yet must not take the places of what is.
void FamilyReader::addEvents(const ItemFamily& family, const Allowance::Limits& limits,
                             StepBudget& budget) {
  const std::size_t most = limits.occurrencesOfAnItem;
  const bool mayLookCloser = limits.crowd == Crowd::cut && place_.shown.has_value();
  auto events = expandEvent(family, place_.times, place_.window, budget, most,
                            mayLookCloser ? Crowd::dropped : limits.crowd);
  if (!events && mayLookCloser) {
    answer_.isForShownOnly = true;
    events = expandEvent(family, place_.times, *place_.shown, budget, most, Crowd::cut);
  }
  if (!events) {
    answer_.isCutShort = true;
    return;
  }
  for (auto& event : *events) {
    if (!comparesLooks_ || isNew(lookOf(event))) answer_.events.push_back(std::move(event));
  }
}

}  // namespace orvane::ical
