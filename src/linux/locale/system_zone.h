#pragma once

#include <unicode/timezone.h>

#include <memory>
#include <string>

#include "foundation/date.h"
#include "linux/locale/region.h"

namespace orvane::host {

// The zone that the system is in around `now`. It is found by name (TZ, else the links behind
// localtime, else the file in the zone tree with the same content). Where there is no name, a zone
// that agrees with the C library over the coming year is taken, or else the offset of `now` for
// good.
[[nodiscard]] std::unique_ptr<icu::TimeZone> systemZone(const SystemPlaces& places, Date now);

// Whether systemZone() could do no better than a fixed offset.
[[nodiscard]] bool isFixed(const icu::TimeZone& zone);

// What `region` is pinned to, or the system's zone.
[[nodiscard]] std::unique_ptr<icu::TimeZone> zoneOf(const Region& region, Date now);

// The zone of that name. Where the year from `now` on shows that the system's file of it is newer
// than what ICU knows, it has the file's rules. Null for a name that stands for no zone.
[[nodiscard]] std::unique_ptr<icu::TimeZone> namedZone(const std::string& name,
                                                       const SystemPlaces& places, Date now);

}  // namespace orvane::host
