#include "agenda/next_deadline.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace orvane {
namespace {

// The ignored words as they stand in the settings at the moment of the first title; most
// evaluations test one or two titles, many none.
class IgnoredWords {
 public:
  IgnoredWords(const DashboardSettings& settings, const Locale& locale)
      : settings_(settings), locale_(locale) {}

  [[nodiscard]] bool match(const std::string& title) {
    if (!words_) words_ = read();
    if (words_->empty()) return false;
    const std::string lowered = locale_.lowercased(title);
    return std::any_of(words_->begin(), words_->end(), [&](const std::string& word) {
      return lowered.find(word) != std::string::npos;
    });
  }

 private:
  [[nodiscard]] std::vector<std::string> read() const {
    std::vector<std::string> words;
    for (const auto& word : settings_.smartNextIgnoredWords()) {
      words.push_back(locale_.lowercased(word));
    }
    return words;
  }

  const DashboardSettings& settings_;
  const Locale& locale_;
  std::optional<std::vector<std::string>> words_;
};

// Later than every date.
constexpr Date never{std::numeric_limits<double>::infinity()};

// The best of the items seen so far. Dates are looked at first, so that a title is lowered only
// for an item that would win by its date.
template <class Item>
class Earliest {
 public:
  Earliest(IgnoredWords& ignored, Date now, Date bound)
      : ignored_(ignored), now_(now), bound_(bound) {}

  void consider(const Item& item, Date date) {
    if (!(date > now_) || !(date < bound_)) return;
    if (ignored_.match(item.title)) return;
    best_ = &item;
    bound_ = date;
  }
  [[nodiscard]] const Item* best() const { return best_; }

 private:
  IgnoredWords& ignored_;
  Date now_;
  Date bound_;  // only what is strictly earlier can win
  const Item* best_ = nullptr;
};

const DashboardEvent* nextEvent(std::span<const DashboardEvent> events,
                                const DashboardSettings& settings, IgnoredWords& ignored,
                                Date now) {
  if (!*settings.countdownIncludesEvents) return nullptr;
  const bool allDayCounts = *settings.countdownIncludesAllDayEvents;
  Earliest<DashboardEvent> earliest(ignored, now, never);
  for (const auto& event : events) {
    if (allDayCounts || !event.isAllDay) earliest.consider(event, event.startDate);
  }
  return earliest.best();
}

const DashboardReminder* nextReminder(std::span<const DashboardReminder> reminders,
                                      const DashboardSettings& settings, IgnoredWords& ignored,
                                      Date now, Date bound) {
  if (!*settings.countdownIncludesReminders) return nullptr;
  Earliest<DashboardReminder> earliest(ignored, now, bound);
  for (const auto& reminder : reminders) {
    if (reminder.dueDate) earliest.consider(reminder, *reminder.dueDate);
  }
  return earliest.best();
}

DashboardDeadline deadlineOf(const DashboardEvent& event) {
  return {"event-" + event.id, event.title, event.calendarTitle, event.startDate,
          DashboardDeadlineSource::calendar};
}

DashboardDeadline deadlineOf(const DashboardReminder& reminder) {
  return {"reminder-" + reminder.id, reminder.title, reminder.calendarTitle, *reminder.dueDate,
          DashboardDeadlineSource::reminder};
}

}  // namespace

std::optional<DashboardDeadline> findNextDeadline(std::span<const DashboardEvent> events,
                                                  std::span<const DashboardReminder> reminders,
                                                  const DashboardSettings& settings,
                                                  const Locale& locale, Date now) {
  IgnoredWords ignored(settings, locale);
  const auto* event = nextEvent(events, settings, ignored, now);
  const Date bound = event ? event->startDate : never;
  if (const auto* reminder = nextReminder(reminders, settings, ignored, now, bound)) {
    return deadlineOf(*reminder);
  }
  if (event) return deadlineOf(*event);
  return std::nullopt;
}

}  // namespace orvane
