#include "linux/reader/zone_index.h"

#include <algorithm>

namespace orvane::ical {

namespace {

std::string folded(std::string_view name) {
  std::string folded(name);
  for (char& letter : folded) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter + ('a' - 'A'));
    if (letter == ' ') letter = '_';
  }
  return folded;
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

bool isDigit(char letter) { return letter >= '0' && letter <= '9'; }

int takeNumber(std::string_view& text, std::size_t most) {
  int number = 0;
  for (std::size_t count = 0; count < most && !text.empty() && isDigit(text.front()); ++count) {
    number = number * 10 + (text.front() - '0');
    text.remove_prefix(1);
  }
  return number;
}

// Takes "UTC", "GMT+1", "UTC-03:30" or "GMT +0100" off the front; nothing is taken when it is none.
std::optional<std::int64_t> takeOffset(std::string_view& text) {
  const std::string start = folded(text.substr(0, 3));
  if (start != "utc" && start != "gmt") return std::nullopt;
  text.remove_prefix(3);
  std::string_view rest = trimmed(text);
  // U+2212 is the minus of those who set type.
  const bool isTypeset = rest.starts_with("\xe2\x88\x92");
  if (!isTypeset && !rest.starts_with('+') && !rest.starts_with('-')) return 0;
  const bool isWest = isTypeset || rest.front() == '-';
  rest.remove_prefix(isTypeset ? 3 : 1);
  if (rest.empty() || !isDigit(rest.front())) return 0;
  const int hours = takeNumber(rest, 2);
  if (rest.starts_with(':') || rest.starts_with('.')) rest.remove_prefix(1);
  const int minutes = takeNumber(rest, 2);
  if (hours > 14 || minutes > 59) return std::nullopt;
  text = rest;
  return (isWest ? -1 : 1) * (hours * 3600 + minutes * 60);
}

// What a place is called in the zone that is named after it.
std::string_view placeIn(std::string_view text) {
  text = trimmed(text.substr(0, text.find('(')));
  for (const std::string_view ending : {" Standard Time", " Daylight Time", " Time", " Is."}) {
    if (text.ends_with(ending)) return trimmed(text.substr(0, text.size() - ending.size()));
  }
  return text;
}

}  // namespace

ZoneIndex::ZoneIndex(const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    names_.emplace(folded(name), name);
    places_.emplace(folded(name.substr(name.rfind('/') + 1)), name);
  }
}

std::string ZoneIndex::inAnyCase(std::string_view name) const {
  const auto found = names_.find(folded(trimmed(name)));
  return found == names_.end() ? std::string() : found->second;
}

std::vector<std::string> ZoneIndex::ofPlace(std::string_view place) const {
  std::vector<std::string> names;
  const auto [begin, end] = places_.equal_range(folded(place));
  for (auto found = begin; found != end; ++found) names.push_back(found->second);
  return names;
}

ShownZone readShownZone(std::string_view name) {
  ShownZone zone;
  name = trimmed(name);
  std::string_view rest = name;
  if (rest.starts_with('(')) rest.remove_prefix(1);
  zone.offset = takeOffset(rest);
  if (zone.offset && rest.starts_with(')')) rest.remove_prefix(1);
  // "UTC+1x" is a name like any other.
  if (zone.offset && !rest.empty() && rest.front() != ' ') zone.offset.reset();
  if (!zone.offset) rest = name;
  while (!rest.empty()) {
    const std::string_view part = rest.substr(0, rest.find_first_of(zone.offset ? ",/" : ","));
    rest.remove_prefix(std::min(part.size() + 1, rest.size()));
    if (const auto place = placeIn(part); !place.empty()) zone.places.emplace_back(place);
  }
  return zone;
}

}  // namespace orvane::ical
