#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>

#include "linux/locale/calendar.h"
#include "linux/locale/region.h"

namespace orvane::host {

// A system whose zone files and environment are ours. Its C library follows `actualZone`.
class FakeSystem {
 public:
  FakeSystem() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "orvane-locale-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
    root = pattern;
  }
  ~FakeSystem() { std::filesystem::remove_all(root); }
  FakeSystem(const FakeSystem&) = delete;
  FakeSystem& operator=(const FakeSystem&) = delete;

  std::filesystem::path write(const std::string& name, const std::string& text) const {
    const auto path = root / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << text;
    return path;
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

  std::filesystem::path root;
  std::map<std::string, std::string> environment;
  std::map<std::string, OffsetAt> zoneFiles;  // what they say
  OffsetAt offset = [](std::int64_t) { return 0; };
};

}  // namespace orvane::host
