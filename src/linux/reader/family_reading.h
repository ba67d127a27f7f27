#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "linux/reader/calendar_text.h"
#include "linux/reader/component_splitter.h"
#include "linux/reader/event_expansion.h"
#include "linux/reader/text_encoding.h"

namespace orvane::ical {

// The components of one kind and UID, by where they stand.
struct FamilySpans {
  ComponentKind kind = ComponentKind::event;
  bool isOfInterest = false;
  bool hasUid = true;
  std::vector<ComponentSpan> spans;
};

struct FamilyAnswer {
  std::vector<wire::EventOccurrence> events;
  std::vector<wire::OpenTask> tasks;
  bool isForShownOnly = false;
  // It asks for more than it was granted, so that this is not all.
  bool isCutShort = false;
};

// What all items of a file may cost together, and each of them. Something is left even for the
// last one, so that a greedy item does not hide the others.
class Allowance {
 public:
  struct Limits {
    std::int64_t stepsOfAnItem = 0;
    std::int64_t stepsOfAll = 0;
    StepBudget::Duration timeOfAll{};
    std::size_t occurrencesOfAnItem = 0;
    Crowd crowd = Crowd::cut;
  };

  explicit Allowance(const Limits& limits);

  [[nodiscard]] const Limits& limits() const { return limits_; }
  [[nodiscard]] StepBudget grant() const;
  void settle(const StepBudget& granted);

 private:
  [[nodiscard]] std::int64_t stepsOfNext() const;

  Limits limits_;
  std::int64_t stepsLeft_;
  StepBudget::Duration end_;
};

// Reads the families of one text, one after the other.
class FamilyReader {
 public:
  // Nothing of it is owned.
  FamilyReader(std::string_view text, TextEncoding encoding, FileZones& zones,
               const ReadingPlace& place)
      : text_(text), encoding_(encoding), zones_(zones), place_(place) {}

  FamilyAnswer read(const FamilySpans& spans, Allowance& allowance);

 private:
  struct Members;

  Members readMembers(const FamilySpans& spans);
  void addItem(ComponentKind kind, const ItemFamily& family, Allowance& allowance);
  void addEvents(const ItemFamily& family, const Allowance::Limits& limits, StepBudget& budget);
  bool isNew(std::string look) { return looks_.insert(std::move(look)).second; }

  std::string_view text_;
  TextEncoding encoding_;
  FileZones& zones_;
  const ReadingPlace& place_;
  FamilyAnswer answer_;
  bool comparesLooks_ = false;
  std::unordered_set<std::string> looks_;
};

}  // namespace orvane::ical
