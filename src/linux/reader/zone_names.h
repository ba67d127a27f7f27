#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "linux/reader/zone.h"
#include "linux/reader/zone_index.h"

namespace orvane::ical {

// The zones of the system, each read at most once.
class SystemZones {
 public:
  struct NamedZone {
    Zone zone;
    std::string ianaName;
  };

  // By an IANA name, also in other case or at the end of a path
  // ("/example.org/20260101/Europe/Berlin"), by a name of Windows, or by one that is made to be
  // shown, see readShownZone(); nullptr when it is none of them. Valid as long as this object.
  const NamedZone* find(const std::string& name);

 private:
  const NamedZone* findExactly(const std::string& ianaName);
  const NamedZone* findInAnyCase(const std::string& name);
  const NamedZone* findAtEndOf(const std::string& path);
  const NamedZone* findShown(const std::string& name);
  const NamedZone* findOffset(std::int64_t offset);
  const ZoneIndex& index();

  std::map<std::string, std::unique_ptr<NamedZone>> zones_;  // nullptr: there is none
  std::map<std::string, const NamedZone*> found_;            // by whatever name
  std::optional<ZoneIndex> index_;
};

// What the times of an item are told in.
struct ItemZone {
  Zone zone;
  // The system's zone of the same name, which need not agree with it; nullptr when the zone is
  // known from its file only.
  const SystemZones::NamedZone* system = nullptr;
};

// The zones that files bring along, understood once for all files that bring the same; items that
// were written by one program nearly always do.
class DefinedZones {
 public:
  DefinedZones(SystemZones& system, int horizonYear) : system_(system), horizonYear_(horizonYear) {}

  // Of a VTIMEZONE; nullptr when it says nothing that can be used.
  std::shared_ptr<const ItemZone> understand(std::string_view definition);

 private:
  std::shared_ptr<const ItemZone> read(std::string_view definition);

  SystemZones& system_;
  int horizonYear_;
  std::map<std::string, std::shared_ptr<const ItemZone>, std::less<>> known_;
};

// What the TZIDs of one file mean: its own definitions come first, those of the same VCALENDAR
// before those of others; then what the name says.
class FileZones {
 public:
  FileZones(SystemZones& system, DefinedZones& defined) : system_(system), defined_(defined) {}

  // The text of a VTIMEZONE, which must live as long as this. It is read when it is first needed.
  void add(int calendar, std::string_view definition);
  // nullptr for a name that means nothing; its times are floating. Valid as long as this object.
  const ItemZone* find(int calendar, const std::string& tzid);

 private:
  using Key = std::pair<std::string, int>;  // TZID, number of the VCALENDAR

  std::shared_ptr<const ItemZone> understand(const Key& key);

  SystemZones& system_;
  DefinedZones& defined_;
  std::map<Key, std::string_view> definitions_;
  std::map<Key, std::shared_ptr<const ItemZone>> known_;
};

}  // namespace orvane::ical
