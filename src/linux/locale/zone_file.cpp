#include "linux/locale/zone_file.h"

#include <glib.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string_view>

namespace orvane::host {
namespace {

// GLib would also read rules like "XYZ-3" out of a name, and does not expect that another file
// of the folder is no zone.
bool isZoneFile(const std::string& zone) {
  if (zone.empty() || zone.front() == '/' || zone.find("..") != zone.npos) return false;
  const char* folder = std::getenv("TZDIR");
  const auto path = std::filesystem::path(folder ? folder : "/usr/share/zoneinfo") / zone;
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return false;
  std::array<char, 4> start{};
  return std::ifstream(path, std::ios::binary).read(start.data(), start.size()) &&
         std::string_view(start.data(), start.size()) == "TZif";
}

}  // namespace

OffsetAt offsetByZoneFile(const std::string& zone) {
  if (!isZoneFile(zone)) return {};
  GTimeZone* opened = g_time_zone_new_identifier(zone.c_str());
  if (!opened) return {};
  const std::shared_ptr<GTimeZone> file(opened, g_time_zone_unref);
  return [file](std::int64_t instant) -> std::int32_t {
    const int interval = g_time_zone_find_interval(file.get(), G_TIME_TYPE_UNIVERSAL, instant);
    return interval < 0 ? 0 : g_time_zone_get_offset(file.get(), interval);
  };
}

}  // namespace orvane::host
