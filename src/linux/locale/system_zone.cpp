#include "linux/locale/system_zone.h"

#include <unicode/strenum.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string_view>
#include <utility>
#include <vector>

#include "linux/locale/ruled_zone.h"
#include "linux/locale/unicode_text.h"
#include "linux/locale/zone_name.h"

namespace orvane::host {
namespace {

struct Sample {
  std::int64_t instant;
  std::int32_t offset;
};

// Close enough together that no zone of different rules passes for the system's.
std::vector<Sample> sampleYear(const OffsetAt& offset, Date now) {
  constexpr std::int64_t kDay = 86400, kSpan = 400 * kDay, kStep = 3 * kDay;
  const auto start = static_cast<std::int64_t>(std::floor(now.secondsSince1970)) - kDay;
  std::vector<Sample> samples;
  for (auto instant = start; instant < start + kSpan; instant += kStep) {
    samples.push_back({instant, offset(instant)});
  }
  return samples;
}

bool agrees(const icu::TimeZone& zone, const std::vector<Sample>& samples) {
  for (const auto& sample : samples) {
    std::int32_t raw = 0, dst = 0;
    UErrorCode status = U_ZERO_ERROR;
    zone.getOffset(static_cast<double>(sample.instant) * 1000.0, false, raw, dst, status);
    if (U_FAILURE(status) || (raw + dst) / 1000 != sample.offset) return false;
  }
  return true;
}

std::unique_ptr<icu::TimeZone> agreeingZone(const std::vector<Sample>& samples) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::StringEnumeration> names(icu::TimeZone::createTimeZoneIDEnumeration(
      UCAL_ZONE_TYPE_CANONICAL_LOCATION, nullptr, nullptr, status));
  while (U_SUCCESS(status)) {
    const auto* name = names->snext(status);
    if (!name || U_FAILURE(status)) break;
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(*name));
    if (agrees(*zone, samples)) return zone;
  }
  return nullptr;
}

std::unique_ptr<icu::TimeZone> knownZone(const std::string& name) {
  std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(fromUtf8(name)));
  if (*zone == icu::TimeZone::getUnknown()) return nullptr;
  return zone;
}

// The zone itself where there is one and it agrees with the offsets in the coming year.
std::unique_ptr<icu::TimeZone> withRulesOf(const OffsetAt& offset,
                                           std::unique_ptr<icu::TimeZone> zone,
                                           const std::string& name, Date now) {
  if (zone && agrees(*zone, sampleYear(offset, now))) return zone;
  auto ruled = ruledZone(name, offset);
  return ruled ? std::move(ruled) : std::move(zone);
}

// Custom zones of ICU are named by their offset.
constexpr std::string_view kFixedPrefix = "GMT";

std::unique_ptr<icu::TimeZone> fixedZone(std::int32_t offset) {
  std::array<char, 16> name;
  const int size = std::abs(offset);
  std::snprintf(name.data(), name.size(), "%s%c%02d:%02d:%02d", kFixedPrefix.data(),
                offset < 0 ? '-' : '+', size / 3600 % 24, size / 60 % 60, size % 60);
  return std::unique_ptr<icu::TimeZone>(icu::TimeZone::createTimeZone(name.data()));
}

}  // namespace

std::unique_ptr<icu::TimeZone> namedZone(const std::string& name, const SystemPlaces& places,
                                         Date now) {
  auto zone = knownZone(name);
  const auto offset = places.offsetOf ? places.offsetOf(name) : OffsetAt();
  return offset ? withRulesOf(offset, std::move(zone), name, now) : std::move(zone);
}

std::unique_ptr<icu::TimeZone> systemZone(const SystemPlaces& places, Date now) {
  tzset();
  if (const auto name = systemZoneName(places)) {
    if (auto zone = withRulesOf(places.offset, knownZone(*name), *name, now)) return zone;
  }
  const auto samples = sampleYear(places.offset, now);
  if (auto zone = knownZone("Etc/UTC"); agrees(*zone, samples)) return zone;
  if (auto zone = agreeingZone(samples)) return zone;
  return fixedZone(samples.front().offset);
}

bool isFixed(const icu::TimeZone& zone) {
  icu::UnicodeString name;
  // "GMT", "GMT0" and "GMT+0" are names of zones like any other.
  const auto text = toUtf8(zone.getID(name));
  return text.starts_with(kFixedPrefix) && text.size() > std::string_view("GMT+0").size();
}

std::unique_ptr<icu::TimeZone> zoneOf(const Region& region, Date now) {
  if (region.timeZone) {
    if (auto zone = namedZone(*region.timeZone, region.system, now)) return zone;
  }
  return systemZone(region.system, now);
}

}  // namespace orvane::host
