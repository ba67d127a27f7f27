#include "snapshot_options.h"

#include <charconv>
#include <functional>
#include <map>
#include <string_view>

namespace orvane::tools {
namespace {

constexpr double largestSize = 16384;
constexpr double largestScale = 8;
// Pictures of more pixels than cairo can address are refused before anything is read.
constexpr double mostPixelsAcross = 32767;
// Of all its pixels: a little more than 7680x4320 at scale 2.
constexpr double mostPixels = 134'217'728;

using Problem = std::optional<std::string>;

// The number that the whole text is; nothing for any other text.
template <class Number>
std::optional<Number> numberFrom(std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::optional<int> digitsFrom(std::string_view text, std::size_t first, std::size_t count) {
  const auto digits = text.substr(first, count);
  if (digits.size() != count || digits.find_first_not_of("0123456789") != digits.npos) {
    return std::nullopt;
  }
  return numberFrom<int>(digits);
}

// "2026-11-20T09:41:00"; the seconds may be left out.
std::optional<DateComponents> localTimeFrom(std::string_view text) {
  constexpr std::string_view form = "0000-00-00T00:00:00";
  if (text.size() != form.size() && text.size() != form.size() - 3) return std::nullopt;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (form[i] != '0' && text[i] != form[i]) return std::nullopt;
  }
  DateComponents components;
  components.calendar = "gregorian";
  components.year = digitsFrom(text, 0, 4);
  components.month = digitsFrom(text, 5, 2);
  components.day = digitsFrom(text, 8, 2);
  components.hour = digitsFrom(text, 11, 2);
  components.minute = digitsFrom(text, 14, 2);
  components.second = text.size() == form.size() ? digitsFrom(text, 17, 2) : std::optional(0);
  const bool isWhole = components.year && components.month && components.day && components.hour &&
                       components.minute && components.second;
  return isWhole ? std::optional(components) : std::nullopt;
}

std::optional<Size> sizeFrom(std::string_view text) {
  const auto cross = text.find('x');
  if (cross == std::string_view::npos) return std::nullopt;
  const auto width = numberFrom<int>(text.substr(0, cross));
  const auto height = numberFrom<int>(text.substr(cross + 1));
  const auto fits = [](std::optional<int> length) {
    return length && *length >= 1 && *length <= largestSize;
  };
  if (!fits(width) || !fits(height)) return std::nullopt;
  return Size{static_cast<double>(*width), static_cast<double>(*height)};
}

Problem setNow(SnapshotOptions& options, const std::string& value) {
  const auto now = localTimeFrom(value);
  if (!now) return "is no local time like 2026-11-20T09:41:00";
  options.now = *now;
  return std::nullopt;
}

Problem setSize(SnapshotOptions& options, const std::string& value) {
  const auto size = sizeFrom(value);
  if (!size) return "is no size like 1920x1080";
  options.size = *size;
  return std::nullopt;
}

Problem setScale(SnapshotOptions& options, const std::string& value) {
  const auto scale = numberFrom<double>(value);
  if (!scale || !(*scale >= 0.25 && *scale <= largestScale)) {
    return "is no scale between 0.25 and 8";
  }
  options.scale = *scale;
  return std::nullopt;
}

Problem addSetting(SnapshotOptions& options, const std::string& value) {
  const auto equals = value.find('=');
  if (equals == std::string::npos || equals == 0) return "is no setting like themeMode=dark";
  options.settings.push_back({value.substr(0, equals), value.substr(equals + 1)});
  return std::nullopt;
}

Problem deny(SnapshotOptions& options, const std::string& value) {
  if (value != "events" && value != "reminders") return "is neither events nor reminders";
  (value == "events" ? options.deniesEvents : options.deniesReminders) = true;
  return std::nullopt;
}

Problem nonEmpty(const std::string& value) {
  return value.empty() ? Problem("must not be empty") : std::nullopt;
}

using Setter = std::function<Problem(SnapshotOptions&, const std::string&)>;

// An option that takes any text but none at all.
template <class Member>
Setter textSetter(Member SnapshotOptions::*member) {
  return [member](SnapshotOptions& options, const std::string& value) {
    options.*member = value;
    return nonEmpty(value);
  };
}

const std::map<std::string, Setter>& setters() {
  static const std::map<std::string, Setter> table{
      {"--calendars",
       [](SnapshotOptions& options, const std::string& value) {
         options.calendars.push_back(value);
         return nonEmpty(value);
       }},
      {"--now", setNow},
      {"--timezone", textSetter(&SnapshotOptions::timeZone)},
      {"--locale", textSetter(&SnapshotOptions::locale)},
      {"--size", setSize},
      {"--scale", setScale},
      {"--set", addSetting},
      {"--deny", deny},
      {"--background", textSetter(&SnapshotOptions::background)},
      {"--out", textSetter(&SnapshotOptions::picturePath)},
      {"--dump", textSetter(&SnapshotOptions::dumpPath)},
  };
  return table;
}

Problem missingPart(const SnapshotOptions& options) {
  if (options.calendars.empty()) return "--calendars is missing";
  if (!options.now.year) return "--now is missing";
  const double longest = std::max(options.size.width, options.size.height) * options.scale;
  const double pixels = options.size.width * options.size.height * options.scale * options.scale;
  if (options.picturePath && (longest > mostPixelsAcross || pixels > mostPixels)) {
    return "--size and --scale make too large a picture";
  }
  return std::nullopt;
}

}  // namespace

const char* const usage =
    "usage: orvane-snapshot --calendars DIR [--calendars DIR ...] --now 2026-11-20T09:41:00\n"
    "                       [--timezone Europe/Berlin] [--locale en_US] [--size 1920x1080]\n"
    "                       [--scale 1] [--set themeMode=dark ...] [--deny events|reminders]\n"
    "                       [--background '#203040' | FILE.png] [--out FILE.png]\n"
    "                       [--dump FILE.json]\n";

ParsedArguments parseArguments(const std::vector<std::string>& arguments) {
  SnapshotOptions options;
  for (auto word = arguments.begin(); word != arguments.end(); ++word) {
    if (*word == "--help") return HelpRequested{};
    const auto equals = word->starts_with("--") ? word->find('=') : std::string::npos;
    const auto name = word->substr(0, equals);
    const auto setter = setters().find(name);
    if (setter == setters().end()) return ArgumentError{"there is no option \"" + name + "\""};
    if (equals == std::string::npos && std::next(word) == arguments.end()) {
      return ArgumentError{name + " needs a value"};
    }
    const auto value = equals == std::string::npos ? *++word : word->substr(equals + 1);
    if (const auto problem = setter->second(options, value)) {
      return ArgumentError{name + ": \"" + value + "\" " + *problem};
    }
  }
  if (const auto problem = missingPart(options)) return ArgumentError{*problem};
  return options;
}

}  // namespace orvane::tools
