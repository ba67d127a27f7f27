#include "linux/reader/zone_names.h"

#include <array>
#include <cstdio>
#include <cstdlib>

#include "linux/reader/system_zones.h"
#include "linux/reader/windows_zones.h"
#include "linux/reader/zone_definition.h"

namespace orvane::ical {

namespace {

// Zone names are short. What is longer need not be looked for, nor remembered.
constexpr std::size_t kLongestName = 255;
// Of names that mean nothing no more are remembered.
constexpr std::size_t kMostNames = 10'000;
// Texts that are kept for other files; beyond that each file's is read anew.
constexpr std::size_t kMostDefinitions = 200;
constexpr std::size_t kLongestDefinition = 32'768;

// A TZID is a text in a VTIMEZONE and a parameter elsewhere, with other quoting in each.
std::string unquoted(std::string_view tzid) {
  std::string plain;
  for (std::size_t at = 0; at < tzid.size(); ++at) {
    const bool isEscape = tzid[at] == '\\' && at + 1 < tzid.size();
    if (isEscape) ++at;
    if (tzid[at] != '"') plain.push_back(tzid[at]);
  }
  const std::size_t first = plain.find_first_not_of(' ');
  return first == std::string::npos ? ""
                                    : plain.substr(first, plain.find_last_not_of(' ') + 1 - first);
}

}  // namespace

const SystemZones::NamedZone* SystemZones::findExactly(const std::string& ianaName) {
  const auto known = zones_.find(ianaName);
  if (known != zones_.end()) return known->second.get();
  auto zone = systemZone(ianaName);
  if (!zone && zones_.size() >= kMostNames) return nullptr;
  auto& entry = zones_[ianaName];
  if (zone) entry = std::make_unique<NamedZone>(NamedZone{std::move(*zone), ianaName});
  return entry.get();
}

const ZoneIndex& SystemZones::index() {
  if (!index_) index_.emplace(systemZoneNames());
  return *index_;
}

const SystemZones::NamedZone* SystemZones::findInAnyCase(const std::string& name) {
  const std::string ianaName = index().inAnyCase(name);
  return ianaName.empty() ? nullptr : findExactly(ianaName);
}

const SystemZones::NamedZone* SystemZones::findAtEndOf(const std::string& path) {
  std::size_t slash = path.find('/');
  while (slash != std::string::npos) {
    if (const NamedZone* zone = findInAnyCase(path.substr(slash + 1))) return zone;
    slash = path.find('/', slash + 1);
  }
  return nullptr;
}

const SystemZones::NamedZone* SystemZones::findOffset(std::int64_t offset) {
  std::array<char, 32> name{};
  const auto minutes = static_cast<int>(std::abs(offset) / 60);
  std::snprintf(name.data(), name.size(), "GMT%c%02d:%02d", offset < 0 ? '-' : '+', minutes / 60,
                minutes % 60);
  auto& zone = zones_[name.data()];
  if (!zone) zone = std::make_unique<NamedZone>(NamedZone{Zone(offset), name.data()});
  return zone.get();
}

const SystemZones::NamedZone* SystemZones::findShown(const std::string& name) {
  const ShownZone shown = readShownZone(name);
  const auto agrees = [&shown](const Zone& zone) {
    constexpr Instant kJanuary = 1'767'225'600, kJuly = 1'782'864'000;
    return !shown.offset || zone.offsetAt(kJanuary) == *shown.offset ||
           zone.offsetAt(kJuly) == *shown.offset;
  };
  for (const std::string& place : shown.places) {
    for (const std::string& ianaName : index().ofPlace(place)) {
      const NamedZone* zone = findExactly(ianaName);
      if (zone && agrees(zone->zone)) return zone;
    }
  }
  return shown.offset ? findOffset(*shown.offset) : nullptr;
}

const SystemZones::NamedZone* SystemZones::find(const std::string& name) {
  if (name.empty() || name.size() > kLongestName) return nullptr;
  if (const NamedZone* zone = findExactly(name)) return zone;
  const auto known = found_.find(name);
  if (known != found_.end()) return known->second;
  const std::string ianaName = ianaNameOfWindowsZone(name);
  const NamedZone* zone = ianaName.empty() ? nullptr : findExactly(ianaName);
  if (!zone) zone = findInAnyCase(name);
  if (!zone) zone = findAtEndOf(name);
  if (!zone) zone = findShown(name);
  if (found_.size() < kMostNames) found_.emplace(name, zone);
  return zone;
}

std::shared_ptr<const ItemZone> DefinedZones::read(std::string_view text) {
  const ZoneDefinition definition = readZoneDefinition(text, horizonYear_);
  const SystemZones::NamedZone* named = system_.find(unquoted(definition.tzid));
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
  definitions_.emplace(Key(unquoted(tzidOf(definition)), calendar), definition);
}

const ItemZone* FileZones::find(int calendar, const std::string& tzid) {
  if (tzid.size() > kLongestName) return nullptr;
  const Key key(unquoted(tzid), calendar);
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
