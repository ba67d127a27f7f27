#include "linux/calendars/library_answers.h"

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "linux/calendars/stable_hash.h"

namespace orvane::host {
namespace {

constexpr std::size_t longestIdentifier = 200;

bool isListed(const ShelfItems& items, EKEntityType type) {
  const auto holdings = holdingsOf(items);
  if (holdings.areRefused) return false;
  return type == EKEntityType::reminder ? holdings.tasks : holdings.events || !holdings.tasks;
}

EKCalendar calendarOf(const Collection& collection, const ShelfItems& items) {
  const bool isNamedInside = collection.item && items.size() == 1 && items.front()->kept &&
                             items.front()->kept->calendarName();
  return {collection.identifier,
          isNamedInside ? *items.front()->kept->calendarName() : collection.title};
}

// Which calendars are asked for; a list may be as long as there are calendars.
class Selected {
 public:
  explicit Selected(const CalendarSelection& selection) : isAll_(!selection) {
    if (selection) identifiers_.insert(selection->begin(), selection->end());
  }
  [[nodiscard]] bool contains(const EKCalendar& calendar) const {
    return isAll_ || identifiers_.contains(calendar.calendarIdentifier);
  }

 private:
  bool isAll_;
  std::unordered_set<std::string_view> identifiers_;  // of the selection, which outlives this
};

// Hands out identifiers, numbering those that were handed out before.
class Identifiers {
 public:
  std::string unique(std::string wanted) {
    const int count = ++counts_[wanted];
    return count == 1 ? wanted : wanted + "#" + std::to_string(count);
  }

 private:
  std::unordered_map<std::string, int> counts_;
};

std::string itemIdentifier(const EKCalendar& calendar, const ShelfItem& item,
                           const std::string& uid) {
  const auto& identifier = calendar.calendarIdentifier;
  if (uid.empty()) return identifier + ":" + hexText(item.name);
  if (uid.size() <= longestIdentifier) return identifier + ":" + uid;
  return identifier + ":" + hexText(stableHash(uid));
}

// The events of one calendar that overlap a window.
class EventTeller {
 public:
  EventTeller(const CalendarContent& content, Date start, Date end, std::vector<EKEvent>& events)
      : content_(content), start_(start), end_(end), events_(events) {}

  void tell() {
    for (const auto* item : content_.items) {
      if (item->kept) tell(*item);
    }
  }

 private:
  void tell(const ShelfItem& item) {
    // Numbered by all that the file holds, so that a day's turn renames nothing.
    std::map<std::uint32_t, std::string> itemIdentifiers;
    for (const auto& event : item.kept->events()) {
      auto& identifier = itemIdentifiers[event.uid];
      if (identifier.empty()) {
        identifier =
            itemNames_.unique(itemIdentifier(content_.calendar, item, item.kept->text(event.uid)));
      }
      const auto& recurrence = item.kept->text(event.recurrenceId);
      auto occurrence =
          occurrences_.unique(recurrence.empty() ? identifier : identifier + ":" + recurrence);
      if (overlaps(event)) add(item, event, identifier, std::move(occurrence));
    }
  }

  [[nodiscard]] bool overlaps(const KeptFile::Event& event) const {
    const double start = start_.secondsSince1970;
    if (event.start >= end_.secondsSince1970) return false;
    return event.end > start || event.start >= start;
  }

  void add(const ShelfItem& item, const KeptFile::Event& event, const std::string& identifier,
           std::string occurrence) {
    if (!calendar_) calendar_ = std::make_shared<const EKCalendar>(content_.calendar);
    events_.push_back({std::move(occurrence), identifier, item.kept->title(event.title), calendar_,
                       Date{event.start}, Date{event.end}, event.isAllDay});
  }

  const CalendarContent& content_;
  Date start_;
  Date end_;
  std::vector<EKEvent>& events_;
  Identifiers itemNames_;
  Identifiers occurrences_;
  std::shared_ptr<const EKCalendar> calendar_;
};

void tellReminders(const CalendarContent& content, std::vector<EKReminder>& reminders) {
  Identifiers identifiers;
  std::shared_ptr<const EKCalendar> calendar;
  for (const auto* item : content.items) {
    if (!item->kept) continue;
    for (const auto& task : item->kept->tasks()) {
      if (!calendar) calendar = std::make_shared<const EKCalendar>(content.calendar);
      reminders.push_back(
          {identifiers.unique(itemIdentifier(content.calendar, *item, item->kept->text(task.uid))),
           item->kept->title(task.title), calendar, task.due, task.priority, false});
    }
  }
}

}  // namespace

std::vector<CalendarContent> contentsOf(const FolderLibrary& library) {
  std::vector<CalendarContent> contents;
  for (const auto& collection : library.collections()) {
    auto items = library.itemsOf(collection);
    auto calendar = calendarOf(collection, items);
    contents.push_back({std::move(calendar), std::move(items)});
  }
  return contents;
}

std::vector<EKCalendar> listedIn(const std::vector<CalendarContent>& contents, EKEntityType type) {
  std::vector<EKCalendar> calendars;
  for (const auto& content : contents) {
    if (isListed(content.items, type)) calendars.push_back(content.calendar);
  }
  return calendars;
}

std::vector<EKEvent> eventsIn(const std::vector<CalendarContent>& contents, Date start, Date end,
                              const CalendarSelection& selection) {
  const Selected selected(selection);
  std::vector<EKEvent> events;
  for (const auto& content : contents) {
    if (selected.contains(content.calendar)) EventTeller(content, start, end, events).tell();
  }
  std::stable_sort(events.begin(), events.end(), [](const EKEvent& a, const EKEvent& b) {
    return std::tie(a.startDate, a.title, a.eventIdentifier) <
           std::tie(b.startDate, b.title, b.eventIdentifier);
  });
  return events;
}

std::vector<EKReminder> remindersIn(const std::vector<CalendarContent>& contents,
                                    const CalendarSelection& selection) {
  const Selected selected(selection);
  std::vector<EKReminder> reminders;
  for (const auto& content : contents) {
    if (selected.contains(content.calendar)) tellReminders(content, reminders);
  }
  std::stable_sort(reminders.begin(), reminders.end(), [](const auto& a, const auto& b) {
    return std::tie(a.title, a.calendarItemIdentifier) <
           std::tie(b.title, b.calendarItemIdentifier);
  });
  return reminders;
}

}  // namespace orvane::host
