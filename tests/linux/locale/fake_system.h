#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "linux/locale/calendar.h"
#include "linux/locale/region.h"
#include "support/scratch_folder.h"

namespace orvane::host {

// A system whose zone files and environment are ours. Its C library follows `actualZone`.
class FakeSystem {
 public:
  std::filesystem::path write(const std::string& name, const std::string& text) const {
    return root.write(name, text);
  }
  void linkLocaltime(const std::filesystem::path& target) const {
    std::filesystem::remove(root / "localtime");
    std::filesystem::create_symlink(target, root / "localtime");
  }

  [[nodiscard]] SystemPlaces places() {
    SystemPlaces places;
    places.environment = [this](const char* name) -> std::optional<std::string> {
      const auto found = environment.find(name);
      return found == environment.end() ? std::nullopt : std::optional(found->second);
    };
    places.localtime = root / "localtime";
    places.timezoneName = root / "timezone";
    places.zoneinfo = root / "zoneinfo";
    places.offset = [this](std::int64_t instant) { return offset(instant); };
    places.offsetOf = [this](const std::string& zone) -> OffsetAt {
      const auto found = zoneFiles.find(zone);
      return found == zoneFiles.end() ? OffsetAt() : found->second;
    };
    return places;
  }

  ScratchFolder root;
  std::map<std::string, std::string> environment;
  std::map<std::string, OffsetAt> zoneFiles;  // what they say
  OffsetAt offset = [](std::int64_t) { return 0; };
};

}  // namespace orvane::host
