#pragma once

#include <libecal/libecal.h>

#include <string>

namespace orvane::host {

// One iCalendar object of the components (ICalComponent) and the time zones that they name, as far
// as the system does not know them by that name. Blocks: a zone is asked of the service.
std::string calendarText(ECalClient* client, const GSList* components, GCancellable* cancellable);

}  // namespace orvane::host
