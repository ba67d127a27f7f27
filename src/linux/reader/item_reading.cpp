#include "linux/reader/item_reading.h"

#include <libical/ical.h>

#include <algorithm>
#include <memory>

#include "linux/reader/date_values.h"
#include "linux/reader/item_text.h"

namespace orvane::ical {

namespace {

struct FreeComponent {
  void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};
using Component = std::unique_ptr<icalcomponent, FreeComponent>;

// A hundred years are longer than any item lasts.
constexpr std::int64_t kLongestDuration = 36'600 * kSecondsPerDay;

ItemDuration itemDuration(const icaldurationtype& parsed) {
  const std::int64_t sign = parsed.is_neg ? -1 : 1;
  const std::int64_t days = std::int64_t{parsed.weeks} * 7 + parsed.days;
  const std::int64_t seconds =
      std::int64_t{parsed.hours} * 3600 + std::int64_t{parsed.minutes} * 60 + parsed.seconds;
  return {sign * std::min(days, kLongestDuration / kSecondsPerDay),
          sign * std::min(seconds, kLongestDuration)};
}

// Real items have one.
constexpr std::size_t kMostRules = 50;

class ItemReader {
 public:
  ItemReader(int calendar, FileZones& zones) : calendar_(calendar), zones_(zones) {}

  CalendarItem read(icalcomponent* component) {
    for (icalproperty* property = icalcomponent_get_first_property(component, ICAL_ANY_PROPERTY);
         property; property = icalcomponent_get_next_property(component, ICAL_ANY_PROPERTY)) {
      readProperty(property);
    }
    return std::move(item_);
  }

 private:
  void readProperty(icalproperty* property) {
    icalvalue* value = icalproperty_get_value(property);
    if (!value) return;
    switch (icalproperty_isa(property)) {
      case ICAL_UID_PROPERTY:
        item_.uid = textOf(value);
        break;
      case ICAL_SUMMARY_PROPERTY:
        item_.title = firstCodePoints(textOf(value), kLongestTitle);
        break;
      case ICAL_DTSTART_PROPERTY:
        item_.start = timeOf(property, value);
        break;
      case ICAL_DTEND_PROPERTY:
      case ICAL_DUE_PROPERTY:
        item_.end = timeOf(property, value);
        break;
      case ICAL_DURATION_PROPERTY:
        item_.duration = itemDuration(icalvalue_get_duration(value));
        break;
      case ICAL_RDATE_PROPERTY:
        readAddedTime(property, value);
        break;
      case ICAL_EXDATE_PROPERTY:
        if (const auto time = timeOf(property, value)) item_.excludedTimes.push_back(*time);
        break;
      default:
        readStateProperty(property, value);
        break;
    }
  }

  void readStateProperty(icalproperty* property, icalvalue* value) {
    switch (icalproperty_isa(property)) {
      case ICAL_STATUS_PROPERTY:
        readStatus(icalvalue_get_status(value));
        break;
      case ICAL_COMPLETED_PROPERTY:
        complete();
        break;
      case ICAL_PERCENTCOMPLETE_PROPERTY:
        if (icalvalue_get_integer(value) >= 100) complete();
        break;
      case ICAL_PRIORITY_PROPERTY:
        item_.priority = icalvalue_get_integer(value);
        break;
      case ICAL_SEQUENCE_PROPERTY:
        item_.sequence = icalvalue_get_integer(value);
        break;
      case ICAL_RECURRENCEID_PROPERTY:
        readRecurrenceId(property, value);
        break;
      default:
        break;
    }
  }

  static std::string textOf(icalvalue* value) {
    const char* text =
        icalvalue_isa(value) == ICAL_TEXT_VALUE ? icalvalue_get_text(value) : nullptr;
    return text ? text : "";
  }

  void readStatus(icalproperty_status status) {
    if (status == ICAL_STATUS_CANCELLED) item_.status = CalendarItem::Status::cancelled;
    if (status == ICAL_STATUS_COMPLETED) complete();
  }

  void complete() {
    if (item_.status == CalendarItem::Status::open) item_.status = CalendarItem::Status::completed;
  }

  std::optional<ItemTime> timeOf(icalproperty* property, icalvalue* value) {
    const icalvalue_kind kind = icalvalue_isa(value);
    if (kind == ICAL_DATE_VALUE) return itemTime(property, icalvalue_get_date(value));
    if (kind == ICAL_DATETIME_VALUE) return itemTime(property, icalvalue_get_datetime(value));
    return std::nullopt;
  }

  std::optional<ItemTime> itemTime(icalproperty* property, const icaltimetype& time) {
    const bool isDate = time.is_date != 0;
    const auto wall =
        isDate ? wallTimeOf(time.year, time.month, time.day, 0, 0, 0)
               : wallTimeOf(time.year, time.month, time.day, time.hour, time.minute, time.second);
    if (!wall) return std::nullopt;
    if (isDate) return ItemTime{*wall, ItemTime::Kind::date, nullptr};
    if (icaltime_is_utc(time)) return ItemTime{*wall, ItemTime::Kind::utc, nullptr};
    const ItemZone* zone = zoneOf(property);
    return ItemTime{*wall, zone ? ItemTime::Kind::zoned : ItemTime::Kind::floating, zone};
  }

  const ItemZone* zoneOf(icalproperty* property) {
    icalparameter* parameter = icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER);
    const char* tzid = parameter ? icalparameter_get_tzid(parameter) : nullptr;
    return tzid ? zones_.find(calendar_, tzid) : nullptr;
  }

  void readAddedTime(icalproperty* property, icalvalue* value) {
    if (icalvalue_isa(value) != ICAL_PERIOD_VALUE) {
      if (const auto time = timeOf(property, value)) item_.addedTimes.push_back({*time, {}, {}});
      return;
    }
    const icalperiodtype period = icalvalue_get_period(value);
    const auto start = itemTime(property, period.start);
    if (!start) return;
    AddedTime added{*start, {}, {}};
    if (icaltime_is_null_time(period.end)) {
      added.duration = itemDuration(period.duration);
    } else {
      added.end = itemTime(property, period.end);
    }
    item_.addedTimes.push_back(added);
  }

  void readRecurrenceId(icalproperty* property, icalvalue* value) {
    item_.recurrenceId = timeOf(property, value);
    icalparameter* range = icalproperty_get_first_parameter(property, ICAL_RANGE_PARAMETER);
    item_.isForThisAndFuture = range && icalparameter_get_range(range) == ICAL_RANGE_THISANDFUTURE;
  }

  int calendar_;
  FileZones& zones_;
  CalendarItem item_;
};

std::uint64_t fingerprint(std::string_view text) {
  std::uint64_t hash = 0xcbf29ce484222325;  // FNV-1a
  for (const char byte : text) {
    hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
  }
  return hash;
}

std::string hexadecimal(std::uint64_t number) {
  std::string digits;
  for (int shift = 60; shift >= 0; shift -= 4) {
    digits.push_back("0123456789abcdef"[(number >> shift) & 0xf]);
  }
  return digits;
}

std::vector<RecurrenceRule> parsedRules(const std::vector<std::string>& texts) {
  std::vector<RecurrenceRule> rules;
  for (const std::string& text : texts) {
    if (rules.size() == kMostRules) break;
    if (const auto rule = parseRecurrenceRule(text)) rules.push_back(*rule);
  }
  return rules;
}

}  // namespace

std::string boundedUid(std::string uid) {
  if (uid.size() <= kLongestUid) return uid;
  return firstCodePoints(uid, kLongestUid / 8) + "-" + hexadecimal(fingerprint(uid));
}

std::optional<CalendarItem> readItem(std::string_view text, TextEncoding encoding, int calendar,
                                     FileZones& zones) {
  // The library would rather end the process than take bad text for what it is.
  icalerror_set_errors_are_fatal(0);
  const ItemText reduced = reducedItemText(text, encoding);
  const Component component(icalparser_parse_string(reduced.component.c_str()));
  if (!component) return std::nullopt;
  CalendarItem item = ItemReader(calendar, zones).read(component.get());
  item.rules = parsedRules(reduced.rules);
  item.excludedRules = parsedRules(reduced.excludedRules);
  std::string content = reduced.component;
  for (const auto& rule : reduced.rules) content += "RRULE:" + rule;
  for (const auto& rule : reduced.excludedRules) content += "EXRULE:" + rule;
  item.uid = item.uid.empty() ? "content-" + hexadecimal(fingerprint(content))
                              : boundedUid(std::move(item.uid));
  return item;
}

}  // namespace orvane::ical
