#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "linux/reader/wall_time.h"

namespace orvane::ical {

// The names of the system's zones for those who do not write them as they are written.
class ZoneIndex {
 public:
  // Names as systemZone() takes them.
  explicit ZoneIndex(const std::vector<std::string>& names);

  // "europe/berlin", "America/New York"; empty when there is none.
  [[nodiscard]] std::string inAnyCase(std::string_view name) const;
  // All whose last part is that of a place, such as "Berlin" or "Eastern".
  [[nodiscard]] std::vector<std::string> ofPlace(std::string_view place) const;

 private:
  std::map<std::string, std::string> names_;
  std::multimap<std::string, std::string> places_;
};

// A zone as programs show it to people: "(UTC+01:00) Amsterdam, Berlin, Bern, Rome",
// "Eastern Time (US & Canada)" or just "GMT-0500".
struct ShownZone {
  std::optional<std::int64_t> offset;  // of standard time, seconds east of UTC
  std::vector<std::string> places;     // in the order in which they are named
};

ShownZone readShownZone(std::string_view name);

}  // namespace orvane::ical
