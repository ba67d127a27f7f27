#include "linux/reader/calendar_text.h"

#include <chrono>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "linux/reader/component_splitter.h"
#include "linux/reader/family_reading.h"
#include "linux/reader/item_scan.h"
#include "linux/reader/plain_text.h"

namespace orvane::ical {

namespace {

constexpr std::size_t kMostAnswerBytes = wire::kMostMessageBytes / 4 * 3;

// Nearly every item is read with far fewer steps than these, and has far fewer occurrences.
constexpr Allowance::Limits kModest{50'000, 12'000'000, std::chrono::seconds(2), 1'000,
                                    Crowd::dropped};
constexpr Allowance::Limits kGreedy{2'000'000, 12'000'000, std::chrono::seconds(4),
                                    kMostOccurrences, Crowd::cut};
// Nobody looks at more than these; all of them would have to be kept and drawn.
constexpr std::size_t kMostGreedyOccurrences = 25 * kMostOccurrences;

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
    readFamilies(familiesOf(split.components));
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
        families.push_back({span.kind, isOfInterest(span.kind, scan), !scan.uid.empty(), {span}});
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

  // Those that ask for much come last, so that they cannot crowd out the others.
  void readFamilies(const std::vector<FamilySpans>& families) {
    FamilyReader reader(text_, encoding_, zones_, place_);
    Allowance modest(kModest);
    std::vector<const FamilySpans*> greedy;
    for (const FamilySpans& family : families) {
      FamilyAnswer answer = reader.read(family, modest);
      if (answer.isCutShort) {
        greedy.push_back(&family);
      } else {
        add(std::move(answer), family);
      }
    }
    Allowance most(kGreedy);
    const std::size_t end = answer_.events.size() + kMostGreedyOccurrences;
    for (const FamilySpans* family : greedy) {
      FamilyAnswer answer = reader.read(*family, most);
      const bool isCrowd = answer.events.size() > kModest.occurrencesOfAnItem;
      if (!isCrowd || answer_.events.size() < end) add(std::move(answer), *family);
    }
  }

  void add(FamilyAnswer answer, const FamilySpans& family) {
    if (!family.hasUid && !isFirstOfItsContent(answer)) return;
    answer_.isForShownOnly = answer_.isForShownOnly || answer.isForShownOnly;
    for (auto& event : answer.events) addEvent(std::move(event));
    for (auto& task : answer.tasks) addTask(std::move(task));
  }

  // What has no UID is known by its content: a copy of it would have the same identifiers.
  bool isFirstOfItsContent(const FamilyAnswer& answer) {
    if (!answer.events.empty()) return contents_.insert(answer.events.front().uid).second;
    return answer.tasks.empty() || contents_.insert(answer.tasks.front().uid).second;
  }

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
  std::size_t answerBytes_ = 0;
  std::unordered_set<std::string> contents_;
};

}  // namespace

wire::FileAnswer readCalendarText(std::string bytes, const ReadingPlace& place) {
  return TextReader(std::move(bytes), place).read();
}

}  // namespace orvane::ical
