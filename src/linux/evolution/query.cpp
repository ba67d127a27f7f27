#include "linux/evolution/query.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>

namespace orvane::host {
namespace {

constexpr double margin = 86400;
// The years 1 and 9999: what the service's form of an instant can say.
constexpr double earliest = -62135596800.0;
constexpr double latest = 253402300799.0;

std::string instant(double secondsSince1970) {
  const auto seconds = static_cast<std::time_t>(std::clamp(secondsSince1970, earliest, latest));
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  std::array<char, 32> text{};
  const auto size = std::strftime(text.data(), text.size(), "%Y%m%dT%H%M%SZ", &parts);
  // The C library leaves out the zeros of an early year.
  const std::string digits(text.data(), size);
  return digits.size() < 16 ? std::string(16 - digits.size(), '0') + digits : digits;
}

}  // namespace

std::string queryFor(EKEntityType type, const AccountSpan& span) {
  if (type == EKEntityType::reminder) return "(or (has-recurrences?) (not (is-completed?)))";
  return "(or (has-recurrences?) (occur-in-time-range? (make-time \"" +
         instant(std::floor(span.start) - margin) + "\") (make-time \"" +
         instant(std::ceil(span.end) + margin) + "\")))";
}

}  // namespace orvane::host
