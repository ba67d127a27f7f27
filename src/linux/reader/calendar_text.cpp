#include "linux/reader/calendar_text.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "linux/reader/component_splitter.h"
#include "linux/reader/event_expansion.h"
#include "linux/reader/item_reading.h"
#include "linux/reader/item_scan.h"
#include "linux/reader/plain_text.h"
#include "linux/reader/task_reading.h"

namespace orvane::ical {

namespace {

constexpr std::int64_t kStepsOfAnItem = 2'000'000;
constexpr std::int64_t kStepsOfAFile = 12'000'000;
constexpr std::size_t kMostAnswerBytes = wire::kMostMessageBytes / 4 * 3;

// The components of one kind and UID, by where they stand.
struct FamilySpans {
  ComponentKind kind = ComponentKind::event;
  bool isOfInterest = false;
  std::vector<ComponentSpan> spans;
};

// A family whose every member was read. More than one master means that the file holds different
// items of one UID.
struct FamilyMembers {
  std::vector<CalendarItem> masters;
  std::vector<CalendarItem> overrides;
};

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

class TextReader {
 public:
  TextReader(std::string bytes, const ReadingPlace& place)
      : text_(asByteText(std::move(bytes))),
        encoding_(encodingOf(text_)),
        place_(place),
        zones_(place.systemZones, place.definedZones) {}

  wire::FileAnswer read() {
    const SplitText split = splitIntoComponents(text_);
    if (!split.isCalendar) {
      answer_.outcome = wire::ReadOutcome::notCalendar;
      return std::move(answer_);
    }
    if (split.calendarName) answer_.calendarName = plainText(*split.calendarName, encoding_);
    answer_.holdsEvents = split.holdsEvents;
    answer_.holdsTasks = split.holdsTasks;
    for (const FamilySpans& family : familiesOf(split.components)) readFamily(family);
    return std::move(answer_);
  }

 private:
  [[nodiscard]] std::string_view textOf(const ComponentSpan& span) const {
    return std::string_view(text_).substr(span.begin, span.end - span.begin);
  }

  // Also remembers the time zones. What a glance shows to be of no interest is left out.
  std::vector<FamilySpans> familiesOf(const std::vector<ComponentSpan>& components) {
    std::vector<FamilySpans> families;
    std::unordered_map<std::string, std::size_t> known;
    for (const ComponentSpan& span : components) {
      if (span.kind == ComponentKind::timeZone) {
        zones_.add(span.calendar, textOf(span));
        continue;
      }
      const ItemScan scan = scanItem(textOf(span), place_.window);
      const std::string key = (span.kind == ComponentKind::event ? "e" : "t") + scan.uid;
      const auto place = scan.uid.empty() ? known.end() : known.find(key);
      if (place == known.end()) {
        if (!scan.uid.empty()) known.emplace(key, families.size());
        families.push_back({span.kind, isOfInterest(span.kind, scan), {span}});
      } else {
        families[place->second].spans.push_back(span);
        families[place->second].isOfInterest = true;
      }
    }
    std::erase_if(families, [](const FamilySpans& family) { return !family.isOfInterest; });
    return families;
  }

  static bool isOfInterest(ComponentKind kind, const ItemScan& scan) {
    if (scan.recurs || scan.isOverride) return true;
    return kind == ComponentKind::event ? scan.mayOverlap : !scan.isSettled;
  }

  FamilyMembers readMembers(const FamilySpans& spans) {
    FamilyMembers members;
    for (const ComponentSpan& span : spans.spans) {
      auto item = readItem(textOf(span), encoding_, span.calendar, zones_);
      if (!item) continue;
      (item->recurrenceId ? members.overrides : members.masters).push_back(std::move(*item));
    }
    keepNewest(members.masters);
    // Of two overrides of one occurrence the newer one comes last, and holds.
    std::stable_sort(members.overrides.begin(), members.overrides.end(), isOlder);
    return members;
  }

  void readFamily(const FamilySpans& spans) {
    if (answerBytes_ > kMostAnswerBytes) return;
    FamilyMembers members = readMembers(spans);
    ItemFamily family;
    family.overrides = std::move(members.overrides);
    if (members.masters.empty()) {
      addItem(spans.kind, family);
      return;
    }
    comparesLooks_ = members.masters.size() > 1;
    for (std::size_t index = 0; index < members.masters.size(); ++index) {
      family.master = std::move(members.masters[index]);
      // Two items need two identifiers; the order in the file tells them apart.
      if (index > 0) family.master->uid += "#" + std::to_string(index + 1);
      addItem(spans.kind, family);
      family.overrides.clear();
    }
    comparesLooks_ = false;
    looks_.clear();
  }

  void addItem(ComponentKind kind, const ItemFamily& family) {
    StepBudget budget(std::min(kStepsOfAnItem, stepsLeft_));
    const std::int64_t granted = budget.left();
    if (kind == ComponentKind::event) {
      for (auto& event : occurrencesOf(family, budget)) {
        if (!comparesLooks_ || isNew(lookOf(event))) addEvent(std::move(event));
      }
    } else if (auto task = readTask(family, place_.times, budget)) {
      if (!comparesLooks_ || isNew(lookOf(*task))) addTask(std::move(*task));
    }
    // Something is left even for the last item, so that one greedy item does not hide the others.
    stepsLeft_ = std::max(stepsLeft_ - (granted - budget.left()), kStepsOfAnItem / 5000);
  }

  // What is not looked at yet must not take the places of what is.
  std::vector<wire::EventOccurrence> occurrencesOf(const ItemFamily& family, StepBudget& budget) {
    auto events = expandEvent(family, place_.times, place_.window, budget);
    if (events.size() < kMostOccurrences || !place_.shown) return events;
    answer_.isForShownOnly = true;
    return expandEvent(family, place_.times, *place_.shown, budget);
  }

  // Whether nothing of the same UID looks like this already: a file may hold an item twice.
  bool isNew(std::string look) { return looks_.insert(std::move(look)).second; }

  void addTask(wire::OpenTask task) {
    answerBytes_ += 200 + task.uid.size() + task.title.value_or("").size();
    if (answerBytes_ <= kMostAnswerBytes) answer_.tasks.push_back(std::move(task));
  }

  void addEvent(wire::EventOccurrence event) {
    answerBytes_ +=
        100 + event.uid.size() + event.recurrenceId.size() + event.title.value_or("").size();
    if (answerBytes_ <= kMostAnswerBytes) answer_.events.push_back(std::move(event));
  }

  std::string text_;
  TextEncoding encoding_;
  const ReadingPlace& place_;
  FileZones zones_;
  wire::FileAnswer answer_;
  std::int64_t stepsLeft_ = kStepsOfAFile;
  std::size_t answerBytes_ = 0;
  bool comparesLooks_ = false;
  std::unordered_set<std::string> looks_;
};

}  // namespace

wire::FileAnswer readCalendarText(std::string bytes, const ReadingPlace& place) {
  return TextReader(std::move(bytes), place).read();
}

}  // namespace orvane::ical
