#include "linux/locale/ruled_zone.h"

#include <unicode/rbtz.h>
#include <unicode/tzrule.h>

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "linux/locale/unicode_text.h"

namespace orvane::host {
namespace {

constexpr std::int64_t kFirst = 0;
constexpr std::int64_t kLast = 2'145'916'800;  // 2038 begins
constexpr std::int64_t kStep = 3 * 86'400;

// The first instant behind `before` with the offset of `after`, which differs from that of
// `before`.
std::int64_t changeBetween(std::int64_t before, std::int64_t after, const OffsetAt& offset) {
  const std::int32_t fresh = offset(after);
  while (after - before > 1) {
    const std::int64_t middle = before + (after - before) / 2;
    (offset(middle) == fresh ? after : before) = middle;
  }
  return after;
}

// The instants, in ICU's milliseconds, from which each offset applies.
std::map<std::int32_t, std::vector<UDate>> changesOf(const OffsetAt& offset) {
  std::map<std::int32_t, std::vector<UDate>> changes;
  for (std::int64_t instant = kFirst; instant < kLast; instant += kStep) {
    const std::int64_t next = std::min(instant + kStep, kLast);
    if (offset(instant) == offset(next)) continue;
    const std::int64_t change = changeBetween(instant, next, offset);
    changes[offset(next)].push_back(static_cast<UDate>(change) * 1000);
  }
  return changes;
}

}  // namespace

std::unique_ptr<icu::TimeZone> ruledZone(const std::string& name, const OffsetAt& offset) {
  const auto text = fromUtf8(name);
  auto zone = std::make_unique<icu::RuleBasedTimeZone>(
      text, new icu::InitialTimeZoneRule(text, offset(kFirst) * 1000, 0));
  UErrorCode status = U_ZERO_ERROR;
  for (const auto& [seconds, starts] : changesOf(offset)) {
    zone->addTransitionRule(new icu::TimeArrayTimeZoneRule(text, seconds * 1000, 0, starts.data(),
                                                           static_cast<std::int32_t>(starts.size()),
                                                           icu::DateTimeRule::UTC_TIME),
                            status);
  }
  zone->complete(status);
  return U_SUCCESS(status) ? std::move(zone) : nullptr;
}

}  // namespace orvane::host
