#pragma once

#include <optional>
#include <span>

#include "agenda/records.h"
#include "foundation/date.h"
#include "platform/locale.h"
#include "settings/dashboard_settings.h"

namespace orvane {

// The earliest start of an event or due time of a reminder that is strictly later than `now` and
// that the settings let count: the countdown switches, and the ignored words, which rule out every
// title that contains one of them, case not counting. At the same instant an event goes before a
// reminder, and within each kind the earlier in the given order. Nothing when none qualifies.
[[nodiscard]] std::optional<DashboardDeadline> findNextDeadline(
    std::span<const DashboardEvent> events, std::span<const DashboardReminder> reminders,
    const DashboardSettings& settings, const Locale& locale, Date now);

}  // namespace orvane
