#pragma once

#include <string>

#include "agenda/records.h"
#include "platform/calendar.h"
#include "platform/ek_event_store.h"

namespace orvane {

// The record of a stored event. One without an identifier of its own is known by its item's and its
// start; an event without dates stops the process.
[[nodiscard]] DashboardEvent dashboardEvent(const EKEvent& event);

// The record of a stored reminder; its due date is what the components denote in the user's
// calendar.
[[nodiscard]] DashboardReminder dashboardReminder(const EKReminder& reminder,
                                                  const Calendar& calendar);

// The shortest decimal text that reads back as this number, with at least one digit after the
// point and no exponent.
[[nodiscard]] std::string decimalText(double number);

}  // namespace orvane
