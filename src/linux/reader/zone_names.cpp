#include "linux/reader/zone_names.h"

#include "linux/reader/system_zones.h"
#include "linux/reader/windows_zones.h"
#include "linux/reader/zone_definition.h"

namespace orvane::ical {

namespace {

// Zone names are short. What is longer need not be looked for, nor remembered.
constexpr std::size_t kLongestName = 255;
// Texts that are kept for other files; beyond that each file's is read anew.
constexpr std::size_t kMostDefinitions = 200;
constexpr std::size_t kLongestDefinition = 32'768;

}  // namespace

const SystemZones::NamedZone* SystemZones::findExactly(const std::string& ianaName) {
  const auto known = zones_.find(ianaName);
  if (known != zones_.end()) return known->second.get();
  auto zone = systemZone(ianaName);
  auto& entry = zones_[ianaName];
  if (zone) entry = std::make_unique<NamedZone>(NamedZone{std::move(*zone), ianaName});
  return entry.get();
}

const SystemZones::NamedZone* SystemZones::findAtEndOf(const std::string& path) {
  std::size_t slash = path.find('/');
  while (slash != std::string::npos) {
    if (const NamedZone* zone = findExactly(path.substr(slash + 1))) return zone;
    slash = path.find('/', slash + 1);
  }
  return nullptr;
}

const SystemZones::NamedZone* SystemZones::find(const std::string& name) {
  if (name.empty() || name.size() > kLongestName) return nullptr;
  if (const NamedZone* zone = findExactly(name)) return zone;
  if (const NamedZone* zone = findAtEndOf(name)) return zone;
  const std::string ianaName = ianaNameOfWindowsZone(name);
  return ianaName.empty() ? nullptr : findExactly(ianaName);
}

std::shared_ptr<const ItemZone> DefinedZones::read(std::string_view text) {
  const ZoneDefinition definition = readZoneDefinition(text, horizonYear_);
  const SystemZones::NamedZone* named = system_.find(definition.tzid);
  if (!named) named = system_.find(definition.location);
  if (definition.zone) return std::make_shared<ItemZone>(ItemZone{*definition.zone, named});
  return named ? std::make_shared<ItemZone>(ItemZone{named->zone, named}) : nullptr;
}

std::shared_ptr<const ItemZone> DefinedZones::understand(std::string_view definition) {
  const auto known = known_.find(definition);
  if (known != known_.end()) return known->second;
  auto zone = read(definition);
  if (known_.size() < kMostDefinitions && definition.size() <= kLongestDefinition) {
    known_.emplace(definition, zone);
  }
  return zone;
}

void FileZones::add(int calendar, std::string_view definition) {
  definitions_.emplace(Key(tzidOf(definition), calendar), definition);
}

const ItemZone* FileZones::find(int calendar, const std::string& tzid) {
  if (tzid.size() > kLongestName) return nullptr;
  const Key key(tzid, calendar);
  auto known = known_.find(key);
  if (known == known_.end()) known = known_.emplace(key, understand(key)).first;
  return known->second.get();
}

std::shared_ptr<const ItemZone> FileZones::understand(const Key& key) {
  auto own = definitions_.find(key);
  if (own == definitions_.end()) {
    own = definitions_.lower_bound({key.first, 0});
    if (own != definitions_.end() && own->first.first != key.first) own = definitions_.end();
  }
  if (own != definitions_.end()) {
    if (auto zone = defined_.understand(own->second)) return zone;
  }
  const SystemZones::NamedZone* named = system_.find(key.first);
  return named ? std::make_shared<ItemZone>(ItemZone{named->zone, named}) : nullptr;
}

}  // namespace orvane::ical
