#include "linux/calendars/read_window.h"

namespace orvane::host {
namespace {

constexpr double day = 86400;
constexpr double marginBefore = 1 * day;
constexpr double marginBehind = 8 * day;
constexpr double firstBefore = 1.5 * day;
constexpr double firstBehind = 8.5 * day;

}  // namespace

ReadWindow windowFor(const ReadWindow& current, double start, double end,
                     const std::string& localTimeZone) {
  const bool isCovered =
      current.localTimeZone == localTimeZone && current.start <= start && end <= current.end;
  // A far longer window than is asked for would keep what nobody looks at.
  const double longest = (end - start) + 2 * (marginBefore + marginBehind);
  if (isCovered && current.end - current.start <= longest) return current;
  return {start - marginBefore, end + marginBehind, localTimeZone};
}

ShownSpan firstSpan(double now) { return {now - firstBefore, now + firstBehind}; }

}  // namespace orvane::host
