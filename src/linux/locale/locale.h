#pragma once

#include <memory>

#include "linux/locale/region.h"
#include "platform/locale.h"

namespace orvane::host {

// The region's locale. Dates are shown in the calendar that the locale prefers.
class SystemLocale : public Locale {
 public:
  // Looks again which language and zone the user has. Call it after any news of them. Any thread.
  virtual void systemChanged() = 0;
};

[[nodiscard]] std::unique_ptr<SystemLocale> makeLocale(Region region = {});

}  // namespace orvane::host
