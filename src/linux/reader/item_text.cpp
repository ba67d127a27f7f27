#include "linux/reader/item_text.h"

#include <algorithm>
#include <array>

#include "linux/reader/content_lines.h"

namespace orvane::ical {

namespace {

// No title is shown at such a length; kept well above the limit in code points.
constexpr std::size_t kLongestText = 16'384;

constexpr std::array<std::string_view, 12> kWantedProperties = {
    "UID",    "SUMMARY",   "DTSTART",  "DTEND",         "DUE",      "DURATION",
    "STATUS", "COMPLETED", "PRIORITY", "RECURRENCE-ID", "SEQUENCE", "PERCENT-COMPLETE"};

bool isWanted(std::string_view name) {
  return std::any_of(kWantedProperties.begin(), kWantedProperties.end(),
                     [name](std::string_view wanted) { return equalsIgnoringCase(name, wanted); });
}

bool isText(std::string_view name) {
  return equalsIgnoringCase(name, "SUMMARY") || equalsIgnoringCase(name, "UID");
}

// A cut must not leave half an escape behind.
std::string_view cutText(std::string_view line) {
  if (line.size() <= kLongestText) return line;
  line = line.substr(0, kLongestText);
  while (!line.empty() && line.back() == '\\') line.remove_suffix(1);
  return line;
}

bool isListOfDates(std::string_view name) {
  return equalsIgnoringCase(name, "EXDATE") || equalsIgnoringCase(name, "RDATE");
}

bool isDate(std::string_view name) {
  return isListOfDates(name) || equalsIgnoringCase(name, "DTSTART") ||
         equalsIgnoringCase(name, "DTEND") || equalsIgnoringCase(name, "DUE") ||
         equalsIgnoringCase(name, "RECURRENCE-ID");
}

// A zone's name that should stand in quotes and does not, as in "TZID=(UTC+01:00) Berlin, Rome",
// would end at its first colon; it gets its quotes. Nothing when nothing is amiss.
std::string withQuotedZone(std::string_view line) {
  constexpr std::string_view tzid = "TZID=";
  const std::size_t colon = line.rfind(':');
  std::size_t begin = line.find(';');
  while (begin < colon && !equalsIgnoringCase(line.substr(begin + 1, tzid.size()), tzid)) {
    begin = line.find(';', begin + 1);
  }
  if (colon == line.npos || begin == line.npos || begin > colon) return {};
  begin += 1 + tzid.size();
  const std::string_view rest = line.substr(begin, colon - begin);
  const std::string_view zone = rest.substr(0, rest.find(';'));
  if (zone.find_first_of(":,") == zone.npos || zone.find('"') != zone.npos) return {};
  std::string repaired(line.substr(0, begin));
  return repaired.append("\"").append(zone).append("\"").append(line.substr(begin + zone.size()));
}

// As properties of not too many values each: of more than 500 the library drops the rest.
std::string dividedDates(std::string_view line, std::string_view values) {
  constexpr int mostValues = 400;
  const std::string_view head = line.substr(0, line.size() - values.size());
  std::string divided;
  while (!values.empty()) {
    std::size_t end = values.find(',');
    for (int count = 1; count < mostValues && end != std::string_view::npos; ++count) {
      end = values.find(',', end + 1);
    }
    end = std::min(end, values.size());
    if (!divided.empty()) divided += "\r\n";
    divided.append(head).append(values.substr(0, end));
    values.remove_prefix(std::min(end + 1, values.size()));
  }
  return divided;
}

}  // namespace

ItemText reducedItemText(std::string_view text, TextEncoding encoding) {
  ItemText reduced;
  ContentLines lines(text);
  int depth = 0;
  while (lines.next()) {
    ContentLine line = splitContentLine(lines.line());
    std::string_view whole = lines.line();
    const std::string repaired = isDate(line.name) ? withQuotedZone(whole) : "";
    if (!repaired.empty()) {
      whole = repaired;
      line = splitContentLine(whole);
    }
    const bool isBegin = equalsIgnoringCase(line.name, "BEGIN");
    const bool isEnd = equalsIgnoringCase(line.name, "END");
    if (isBegin) ++depth;
    if (depth == 1 && equalsIgnoringCase(line.name, "RRULE")) {
      reduced.rules.emplace_back(line.value);
    } else if (depth == 1 && equalsIgnoringCase(line.name, "EXRULE")) {
      reduced.excludedRules.emplace_back(line.value);
    } else if (depth == 1 && isListOfDates(line.name)) {
      reduced.component += dividedDates(whole, line.value);
      reduced.component += "\r\n";
    } else if (depth == 1 && (isBegin || isEnd || isWanted(line.name))) {
      const bool mayBeCut = isText(line.name);
      reduced.component += decodedText(mayBeCut ? cutText(whole) : whole, encoding);
      reduced.component += "\r\n";
    }
    if (isEnd) --depth;
  }
  return reduced;
}

}  // namespace orvane::ical
