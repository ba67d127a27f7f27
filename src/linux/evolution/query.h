#pragma once

#include <string>

#include "linux/accounts/account_service.h"

namespace orvane::host {

// What the service is asked for, as its search expressions put it.
//
// Of events: what may lie in the span, and everything that recurs or is an exception of something
// that does. Which of its occurrences lie in the span is not the service's to say: it would walk
// every rule from its beginning, and leave out the exceptions that were moved away. Dates and times
// without a zone are taken for UTC there, so the span is widened by more than any zone is away.
//
// Of tasks: those that are not completed, and everything that recurs.
std::string queryFor(EKEntityType type, const AccountSpan& span);

}  // namespace orvane::host
