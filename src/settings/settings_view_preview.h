#pragma once

#include "dashboard/appearance.h"
#include "foundation/date.h"
#include "platform/form.h"
#include "platform/locale.h"

namespace orvane {

// A sample "Next Up" card before a sample of a desktop picture, as the board would draw it. The
// countdown stands still; the deadline is a full hour of today or tomorrow as seen from `now`, so
// that within an hour only the appearance makes a difference.
[[nodiscard]] FormPreview nextUpPreview(const DashboardAppearance& appearance, const Locale& locale,
                                        Date now);

}  // namespace orvane
