#pragma once

#include <functional>

#include "foundation/subscription.h"

namespace orvane::host {

// Calls `received` from the default main context, some time after the process was sent `signal`;
// several that arrive together may be one call. The previous disposition returns with the end of
// the subscription. One subscription per signal at a time. Main thread only.
//
// A handler and not a blocked signal with a descriptor, because children would inherit the block.
Subscription watchSignal(int signal, std::function<void()> received);

// Whether one of those signals was sent and is not told yet. Main thread only.
bool doesSignalWait();

}  // namespace orvane::host
