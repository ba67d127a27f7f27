#include "linux/calendars/account_answers.h"

#include <utility>

#include "linux/calendars/shown_text.h"
#include "linux/calendars/stable_hash.h"

namespace orvane::host {

std::string accountIdentifier(const std::string& source) {
  return "account-" + hexText(stableHash(source));
}

EKCalendar accountCalendar(const AccountCalendar& calendar) {
  auto title = shownText(calendar.title);
  if (title.empty()) title = calendar.type == EKEntityType::event ? "Calendar" : "Reminders";
  return {accountIdentifier(calendar.source), std::move(title)};
}

std::vector<CalendarContent> contentsOf(const AccountAnswers& answers, EKEntityType type) {
  std::vector<CalendarContent> contents;
  for (const auto& calendar : answers.calendars) {
    if (calendar.type != type) continue;
    CalendarContent content{calendar.calendar, {}};
    if (calendar.item) content.items.push_back(calendar.item.get());
    contents.push_back(std::move(content));
  }
  return contents;
}

}  // namespace orvane::host
