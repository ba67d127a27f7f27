#include "linux/reader/system_zones.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <utility>
#include <vector>

#include "linux/reader/file_bytes.h"
#include "linux/reader/posix_zone_rule.h"

namespace orvane::ical {

namespace {

constexpr std::size_t kHeaderSize = 44;
constexpr std::size_t kLargestZoneFile = 1 << 20;
constexpr int kLastYear = 2200;

std::int64_t bigEndian(std::string_view bytes, std::size_t at, std::size_t width) {
  std::uint64_t value = static_cast<signed char>(bytes[at]) < 0 ? ~std::uint64_t{0} : 0;
  for (std::size_t index = 0; index < width; ++index) {
    value = (value << 8) | static_cast<unsigned char>(bytes[at + index]);
  }
  return static_cast<std::int64_t>(value);
}

// One of the two blocks of a compiled zone: 32-bit times, then 64-bit times.
struct Block {
  std::string_view bytes;
  std::size_t timeWidth = 4;
  std::size_t isUtCount = 0, isStdCount = 0, leapCount = 0, timeCount = 0, typeCount = 0,
              charCount = 0;

  [[nodiscard]] std::size_t size() const {
    return kHeaderSize + timeCount * (timeWidth + 1) + typeCount * 6 + charCount +
           leapCount * (timeWidth + 4) + isStdCount + isUtCount;
  }
};

std::optional<Block> blockAt(std::string_view bytes, std::size_t timeWidth) {
  if (bytes.size() < kHeaderSize || bytes.substr(0, 4) != "TZif") return std::nullopt;
  Block block{bytes, timeWidth};
  std::size_t at = 20;
  for (std::size_t* count : {&block.isUtCount, &block.isStdCount, &block.leapCount,
                             &block.timeCount, &block.typeCount, &block.charCount}) {
    const std::int64_t value = bigEndian(bytes, at, 4);
    if (value < 0 || value > static_cast<std::int64_t>(kLargestZoneFile)) return std::nullopt;
    *count = static_cast<std::size_t>(value);
    at += 4;
  }
  if (block.typeCount == 0 || block.size() > bytes.size()) return std::nullopt;
  return block;
}

std::int64_t offsetOfType(const Block& block, std::size_t type) {
  const std::size_t types = kHeaderSize + block.timeCount * (block.timeWidth + 1);
  return bigEndian(block.bytes, types + 6 * std::min(type, block.typeCount - 1), 4);
}

std::vector<Zone::Change> changesOf(const Block& block) {
  std::vector<Zone::Change> changes;
  const std::size_t types = kHeaderSize + block.timeCount * block.timeWidth;
  for (std::size_t index = 0; index < block.timeCount; ++index) {
    const Instant at =
        bigEndian(block.bytes, kHeaderSize + index * block.timeWidth, block.timeWidth);
    const auto type = static_cast<unsigned char>(block.bytes[types + index]);
    if (at >= kFirstTime && at < kBehindLastTime)
      changes.push_back({at, offsetOfType(block, type)});
  }
  return changes;
}

std::string_view footerBehind(const Block& block) {
  std::string_view rest = block.bytes.substr(block.size());
  if (rest.empty() || rest.front() != '\n') return {};
  rest.remove_prefix(1);
  return rest.substr(0, rest.find('\n'));
}

void appendRule(std::vector<Zone::Change>& changes, std::string_view rule) {
  const Instant last = changes.empty() ? 0 : changes.back().at;
  const int firstYear = static_cast<int>(civilDate(dayOf(last)).year());
  const auto byRule = changesByPosixRule(rule, firstYear, kLastYear);
  if (!byRule) return;
  for (const Zone::Change& change : *byRule) {
    if (changes.empty() || change.at > last) changes.push_back(change);
  }
}

std::string zoneFolder() {
  const char* folder = std::getenv("TZDIR");
  return folder ? folder : "/usr/share/zoneinfo";
}

bool staysInFolder(const std::string& name) {
  return !name.empty() && name.size() < 100 && name.front() != '/' && name.front() != '.' &&
         name.find("..") == std::string::npos && name.find('\0') == std::string::npos;
}

}  // namespace

std::optional<Zone> decodeCompiledZone(std::string_view bytes) {
  auto block = blockAt(bytes, 4);
  if (!block) return std::nullopt;
  std::string_view footer;
  if (bytes[4] >= '2') {
    block = blockAt(bytes.substr(block->size()), 8);
    if (!block) return std::nullopt;
    footer = footerBehind(*block);
  }
  std::vector<Zone::Change> changes = changesOf(*block);
  appendRule(changes, footer);
  return Zone(offsetOfType(*block, 0), std::move(changes));
}

std::vector<std::string> systemZoneNames() {
  namespace fs = std::filesystem;
  constexpr std::size_t mostNames = 5'000;
  const fs::path folder = zoneFolder();
  std::vector<std::string> names;
  std::error_code error;
  for (auto entry = fs::recursive_directory_iterator(folder, error);
       !error && entry != fs::recursive_directory_iterator() && names.size() < mostNames;
       entry.increment(error)) {
    const std::string name = entry->path().lexically_relative(folder).string();
    // The same once more, with leap seconds and without.
    const bool isAnotherSet = name == "posix" || name == "right";
    if (isAnotherSet || entry.depth() > 3) entry.disable_recursion_pending();
    std::error_code unknown;
    if (!isAnotherSet && !entry->is_directory(unknown)) names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::optional<Zone> systemZone(const std::string& name) {
  if (!staysInFolder(name)) return std::nullopt;
  const auto bytes = readRegularFile(zoneFolder() + "/" + name, kLargestZoneFile);
  if (!bytes.text) return std::nullopt;
  return decodeCompiledZone(*bytes.text);
}

}  // namespace orvane::ical
