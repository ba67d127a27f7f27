#include "agenda/day_boundary.h"

#include <algorithm>
#include <cmath>

#include "foundation/fatal_error.h"

namespace orvane {
namespace {

constexpr TimeInterval lengthOfPlainDay = 86'400;
constexpr TimeInterval pastMidnight = 2;
constexpr TimeInterval shortestDelay = 60;

constexpr double nanosecondsPerSecond = 1e9;
constexpr double tooManyNanoseconds = 18'446'744'073'709'551'616.0;  // 2^64
// Signed counts end earlier; half of what they hold, some 146 years, leaves room for adding the
// delay to a clock.
constexpr double longestSleep = 4'611'686'018'427'387'904.0;  // 2^62

}  // namespace

Duration delayUntilNextDay(const Calendar& calendar, Date now) {
  const auto nextMidnight = calendar.dateByAddingDays(1, calendar.startOfDay(now));
  const TimeInterval delay = nextMidnight.value_or(now + lengthOfPlainDay) - now + pastMidnight;
  // Not std::max, which would let a delay that is no number pass for a minute.
  return wholeNanoseconds(delay < shortestDelay ? shortestDelay : delay);
}

Duration wholeNanoseconds(TimeInterval delay) {
  const double nanoseconds = std::trunc(delay * nanosecondsPerSecond);
  if (!(nanoseconds >= 0 && nanoseconds < tooManyNanoseconds)) {
    fatalError("A delay cannot be counted in nanoseconds.");
  }
  return Duration(static_cast<Duration::rep>(std::min(nanoseconds, longestSleep)));
}

}  // namespace orvane
