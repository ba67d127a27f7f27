#pragma once

#include <memory>
#include <string>
#include <vector>

#include "linux/accounts/account_service.h"
#include "linux/calendars/calendar_provider.h"
#include "linux/calendars/library_answers.h"

namespace orvane::host {

// Everything that is known of the accounts' calendars at one moment. It never changes, so that any
// thread may answer from it while the next one is made.
struct AccountAnswers {
  struct Calendar {
    EKCalendar calendar;
    EKEntityType type = EKEntityType::event;
    std::shared_ptr<const ShelfItem> item;  // null while nothing of it could be read
  };

  std::vector<Calendar> calendars;
  ProviderState state;
};

// Unlike that of anything else that the store knows, and the same in every run.
std::string accountIdentifier(const std::string& source);

// The title, fit to be shown and never empty.
EKCalendar accountCalendar(const AccountCalendar& calendar);

// What is held of the calendars of one kind. Refers to the answers.
std::vector<CalendarContent> contentsOf(const AccountAnswers& answers, EKEntityType type);

}  // namespace orvane::host
