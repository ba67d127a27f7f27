#include "linux/locale/zone_name.h"

#include <unicode/strenum.h>
#include <unicode/timezone.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "linux/locale/unicode_text.h"

namespace orvane::host {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostLinks = 40;
// The largest files of the zone tree are a few kilobytes.
constexpr std::uintmax_t kLargestZone = 1 << 20;

std::optional<std::string> known(std::string name) {
  return isTimeZone(name) ? std::optional(std::move(name)) : std::nullopt;
}

// "…/zoneinfo/posix/Europe/Berlin" names Europe/Berlin.
std::optional<std::string> nameInPath(const std::string& path) {
  constexpr std::string_view kTree = "zoneinfo/";
  const auto tree = path.rfind(kTree);
  if (tree == path.npos) return std::nullopt;
  std::string name = path.substr(tree + kTree.size());
  for (const std::string_view variant : {"posix/", "right/"}) {
    if (name.starts_with(variant)) name.erase(0, variant.size());
  }
  return known(std::move(name));
}

std::optional<std::string> nameInVariable(std::string value) {
  if (value.starts_with(':')) value.erase(0, 1);
  if (value.empty()) return "Etc/UTC";
  return value.starts_with('/') ? nameInPath(value) : known(std::move(value));
}

std::optional<std::string> nameInLinks(fs::path link) {
  std::error_code error;
  for (std::size_t i = 0; i < kMostLinks; ++i) {
    if (auto name = nameInPath(link.string())) return name;
    const auto target = fs::read_symlink(link, error);
    if (error) break;
    link = (link.parent_path() / target).lexically_normal();
  }
  return std::nullopt;
}

std::string contentOf(const fs::path& file) {
  std::error_code error;
  if (!fs::is_regular_file(file, error) || fs::file_size(file, error) > kLargestZone) return {};
  std::ostringstream content;
  content << std::ifstream(file, std::ios::binary).rdbuf();
  return content.str();
}

// Also a name that ICU does not know has its file in the tree, and another name may have the same.
std::optional<std::string> nameByContent(const SystemPlaces& places) {
  const auto wanted = contentOf(places.localtime);
  if (wanted.empty()) return std::nullopt;
  const auto same = [&](const std::string& name) {
    std::error_code error;
    const auto file = places.zoneinfo / name;
    return fs::file_size(file, error) == wanted.size() && contentOf(file) == wanted;
  };
  std::string written;
  std::ifstream(places.timezoneName) >> written;
  if (!written.empty() && isTimeZone(written) && same(written)) return written;
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::StringEnumeration> names(icu::TimeZone::createTimeZoneIDEnumeration(
      UCAL_ZONE_TYPE_CANONICAL, nullptr, nullptr, status));
  while (U_SUCCESS(status)) {
    const auto* name = names->snext(status);
    if (!name || U_FAILURE(status)) break;
    if (auto text = toUtf8(*name); same(text)) return text;
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> systemZoneName(const SystemPlaces& places) {
  if (auto value = places.environment("TZ")) return nameInVariable(std::move(*value));
  std::error_code error;
  // Without the file the C library, and so every other program here, takes UTC.
  if (!fs::exists(places.localtime, error)) return "Etc/UTC";
  if (auto name = nameInLinks(places.localtime)) return name;
  return nameByContent(places);
}

}  // namespace orvane::host
