#pragma once

#include <libecal/libecal.h>

#include <functional>
#include <memory>

#include "linux/accounts/account_service.h"
#include "linux/evolution/call_threads.h"

namespace orvane::host {

// Opens the calendar of a source; see AccountDirectory::open().
Subscription openCalendar(std::shared_ptr<CallThreads> threads, ESource* source, EKEntityType type,
                          AccountSigns signs,
                          std::function<void(std::unique_ptr<AccountClient>)> opened);

}  // namespace orvane::host
