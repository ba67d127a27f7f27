#include "linux/locale/zone_file.h"

#include <glib.h>

#include <memory>

namespace orvane::host {

OffsetAt offsetByZoneFile(const std::string& zone) {
  GTimeZone* opened = g_time_zone_new_identifier(zone.c_str());
  if (!opened) return {};
  const std::shared_ptr<GTimeZone> file(opened, g_time_zone_unref);
  return [file](std::int64_t instant) -> std::int32_t {
    const int interval = g_time_zone_find_interval(file.get(), G_TIME_TYPE_UNIVERSAL, instant);
    return interval < 0 ? 0 : g_time_zone_get_offset(file.get(), interval);
  };
}

}  // namespace orvane::host
