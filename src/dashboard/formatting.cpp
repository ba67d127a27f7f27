#include "dashboard/formatting.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace orvane {
namespace {

constexpr std::int64_t minute = 60;
constexpr std::int64_t hour = 60 * minute;
constexpr std::int64_t day = 24 * hour;

std::int64_t wholeSeconds(TimeInterval interval) {
  // Doubles are exact up to here, and no date of a calendar is farther away.
  constexpr double longest = 9007199254740992.0;
  if (std::isnan(interval)) return 0;
  return static_cast<std::int64_t>(std::clamp(interval, -longest, longest));
}

std::string twoUnits(std::int64_t large, char largeUnit, std::int64_t small, char smallUnit) {
  return std::to_string(large) + largeUnit + ' ' + std::to_string(small) + smallUnit;
}

}  // namespace

std::string countdownString(Date to, Date from) {
  const std::int64_t seconds = std::max<std::int64_t>(wholeSeconds(to - from), 0);
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%02lld:%02d:%02d",
                static_cast<long long>(seconds / hour), static_cast<int>(seconds % hour / minute),
                static_cast<int>(seconds % minute));
  return text.data();
}

std::string shortETA(Date to, Date from) {
  const std::int64_t seconds = wholeSeconds(to - from);
  if (seconds < 1) return "now";
  if (seconds >= day) return twoUnits(seconds / day, 'd', seconds % day / hour, 'h');
  if (seconds >= hour) return twoUnits(seconds / hour, 'h', seconds % hour / minute, 'm');
  return std::to_string(std::max<std::int64_t>(seconds / minute, 1)) + 'm';
}

Color countdownColor(Date to, Date from, const DashboardAppearance& settings) {
  const TimeInterval delta = to - from;
  const bool isFar = delta >= 7200;
  if (!settings.urgencyTinting || isFar) return settings.neutral();
  if (delta >= 1800) return Color::yellow().opacity(0.95);
  if (delta > 0) return Color::orange().opacity(0.98);
  return Color::red().opacity(0.92);  // and where the interval is not a number
}

}  // namespace orvane
