#include "linux/reader/zone_definition.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "linux/reader/content_lines.h"
#include "linux/reader/date_values.h"
#include "linux/reader/rule_expansion.h"

namespace orvane::ical {

namespace {

constexpr std::int64_t kMostSteps = 200'000;
constexpr std::size_t kMostChanges = 2'000;
// Changes further back are of no use to anybody, and definitions like to begin in 1601.
constexpr WallTime kFirstOfInterest = dayNumber(1900, 1, 1) * kSecondsPerDay;

// STANDARD or DAYLIGHT: when clocks begin to show which offset.
struct Observance {
  std::optional<WallTime> start;
  std::optional<std::int64_t> offsetFrom, offsetTo;
  std::vector<std::string> rules;
  std::vector<WallTime> dates;
};

class DefinitionReader {
 public:
  DefinitionReader(std::string_view text, int horizonYear)
      : text_(text), horizon_(dayNumber(horizonYear, 1, 1) * kSecondsPerDay) {}

  ZoneDefinition read() {
    ContentLines lines(text_);
    while (lines.next()) readLine(splitContentLine(lines.line()));
    if (!changes_.empty()) definition_.zone = Zone(offsetBefore_, std::move(changes_));
    return std::move(definition_);
  }

 private:
  void readLine(const ContentLine& line) {
    if (equalsIgnoringCase(line.name, "BEGIN")) {
      observance_ = {};
    } else if (equalsIgnoringCase(line.name, "END")) {
      finishObservance();
    } else if (equalsIgnoringCase(line.name, "TZID")) {
      definition_.tzid = std::string(line.value);
    } else if (equalsIgnoringCase(line.name, "X-LIC-LOCATION")) {
      definition_.location = std::string(line.value);
    } else {
      readObservanceLine(line);
    }
  }

  void readObservanceLine(const ContentLine& line) {
    if (equalsIgnoringCase(line.name, "DTSTART")) {
      if (const auto start = parseDateValue(line.value)) observance_.start = start->time;
    } else if (equalsIgnoringCase(line.name, "TZOFFSETFROM")) {
      observance_.offsetFrom = parseOffset(line.value);
    } else if (equalsIgnoringCase(line.name, "TZOFFSETTO")) {
      observance_.offsetTo = parseOffset(line.value);
    } else if (equalsIgnoringCase(line.name, "RRULE")) {
      observance_.rules.emplace_back(line.value);
    } else if (equalsIgnoringCase(line.name, "RDATE")) {
      readDates(line.value);
    }
  }

  void readDates(std::string_view values) {
    while (!values.empty()) {
      const std::size_t comma = std::min(values.find(','), values.size());
      if (const auto date = parseDateValue(values.substr(0, comma))) {
        observance_.dates.push_back(date->time);
      }
      values.remove_prefix(std::min(comma + 1, values.size()));
    }
  }

  void finishObservance() {
    const Observance observance = std::exchange(observance_, {});
    if (!observance.start || !observance.offsetFrom || !observance.offsetTo) return;
    if (!earliest_ || *observance.start < *earliest_) {
      earliest_ = *observance.start;
      offsetBefore_ = *observance.offsetFrom;
    }
    const auto add = [&](WallTime time) {
      if (changes_.size() >= kMostChanges) return false;
      changes_.push_back({time - *observance.offsetFrom, *observance.offsetTo});
      return true;
    };
    add(*observance.start);
    for (const WallTime date : observance.dates) add(date);
    for (const std::string& rule : observance.rules) expand(rule, observance, add);
  }

  void expand(const std::string& text, const Observance& observance, const VisitTime& add) {
    const auto rule = parseRecurrenceRule(text);
    if (!rule) return;
    std::optional<WallTime> until;
    if (rule->until) {
      until = rule->until->time;
      if (rule->until->isUtc) *until += *observance.offsetFrom;
      if (rule->until->isDate) *until += kSecondsPerDay - 1;
    }
    expandRule(*rule, *observance.start, until, {kFirstOfInterest, horizon_}, budget_, add);
  }

  std::string_view text_;
  WallTime horizon_;
  ZoneDefinition definition_;
  Observance observance_;
  std::optional<WallTime> earliest_;
  std::int64_t offsetBefore_ = 0;
  std::vector<Zone::Change> changes_;
  StepBudget budget_{kMostSteps};
};

}  // namespace

ZoneDefinition readZoneDefinition(std::string_view text, int horizonYear) {
  return DefinitionReader(text, horizonYear).read();
}

std::string tzidOf(std::string_view text) {
  ContentLines lines(text);
  while (lines.next()) {
    const ContentLine line = splitContentLine(lines.line());
    if (equalsIgnoringCase(line.name, "TZID")) return std::string(line.value);
  }
  return {};
}

}  // namespace orvane::ical
