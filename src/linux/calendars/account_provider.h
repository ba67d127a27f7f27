#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "foundation/main_actor.h"
#include "linux/accounts/account_service.h"
#include "linux/calendars/account_connection.h"
#include "linux/calendars/calendar_provider.h"
#include "linux/calendars/text_reading.h"

namespace orvane::host {

struct AccountOptions {
  std::string readerPath;  // the program that reads iCalendar texts
  // The IANA name of the current local time zone. Called on worker threads.
  std::function<std::string()> localTimeZone;

  AccountConnection::Patience patience;
  // How long the first answers are waited for before everybody else's are given without them.
  std::chrono::milliseconds firstPatience{1000};
  // A TextReading unless set.
  std::function<void(std::string text, const ReadWindow& window, const ShownSpan& shown,
                     TextReading::Done done)>
      readText;
};

// The calendars and task lists of the desktop's accounts. Queries never block: they are answered
// with what was last read. The actor must outlive the provider.
std::unique_ptr<CalendarProvider> makeAccountProvider(AccountOptions options,
                                                      std::unique_ptr<Accounts> accounts,
                                                      MainActor& actor);

}  // namespace orvane::host
