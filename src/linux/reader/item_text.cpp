#include "linux/reader/item_text.h"

#include <algorithm>
#include <array>

#include "linux/reader/content_lines.h"

namespace orvane::ical {

namespace {

// No title is shown at such a length; kept well above the limit in code points.
constexpr std::size_t kLongestText = 16'384;

constexpr std::array<std::string_view, 14> kWantedProperties = {
    "UID",       "SUMMARY", "DTSTART", "DTEND",    "DUE",           "DURATION", "STATUS",
    "COMPLETED", "RDATE",   "EXDATE",  "PRIORITY", "RECURRENCE-ID", "SEQUENCE", "PERCENT-COMPLETE"};

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

}  // namespace

ItemText reducedItemText(std::string_view text, TextEncoding encoding) {
  ItemText reduced;
  ContentLines lines(text);
  int depth = 0;
  while (lines.next()) {
    const ContentLine line = splitContentLine(lines.line());
    const bool isBegin = equalsIgnoringCase(line.name, "BEGIN");
    const bool isEnd = equalsIgnoringCase(line.name, "END");
    if (isBegin) ++depth;
    if (depth == 1 && equalsIgnoringCase(line.name, "RRULE")) {
      reduced.rules.emplace_back(line.value);
    } else if (depth == 1 && equalsIgnoringCase(line.name, "EXRULE")) {
      reduced.excludedRules.emplace_back(line.value);
    } else if (depth == 1 && (isBegin || isEnd || isWanted(line.name))) {
      const bool mayBeCut = isText(line.name);
      reduced.component += decodedText(mayBeCut ? cutText(lines.line()) : lines.line(), encoding);
      reduced.component += "\r\n";
    }
    if (isEnd) --depth;
  }
  return reduced;
}

}  // namespace orvane::ical
