// locale/ gives the logic its calendar and its texts through ICU: the arithmetic of days in the
// system's time zone, and dates, numbers, case and order in the user's language.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "foundation/date.h"

namespace orvane::host {

// Seconds east of UTC at an instant, in seconds since 1970.
using OffsetAt = std::function<std::int32_t(std::int64_t instant)>;

// Where the system keeps its time zone and the user's language. The defaults are the real places.
struct SystemPlaces {
  std::function<std::optional<std::string>(const char* name)> environment;
  std::filesystem::path localtime = "/etc/localtime";
  std::filesystem::path timezoneName = "/etc/timezone";
  std::filesystem::path zoneinfo = "/usr/share/zoneinfo";
  // Of the system's zone by the C library, which reads the zone's own file and therefore knows
  // rules that are newer than ICU's.
  OffsetAt offset;
  // Of the zone of that name by its file; empty where there is none.
  std::function<OffsetAt(const std::string& zone)> offsetOf;

  SystemPlaces();
};

// By the system's wall clock.
[[nodiscard]] Date systemNow();

// What a calendar and a locale go by. Whatever is left out follows the system.
struct Region {
  std::optional<std::string> timeZone;    // an IANA name; must satisfy isTimeZone()
  std::optional<std::string> locale;      // "de_DE", "sr_RS@latin", "C"; see knownLocaleName()
  std::function<Date()> now = systemNow;  // the system's clock; any thread
  SystemPlaces system;
};

[[nodiscard]] bool isTimeZone(const std::string& name);
// Whether there are texts for the language of this locale.
[[nodiscard]] bool isLocale(const std::string& name);

}  // namespace orvane::host
