#pragma once

#include <functional>
#include <memory>

#include "linux/accounts/account_service.h"
#include "linux/evolution/call_threads.h"

namespace orvane::host {

// Opens the registry of the desktop's accounts; see AccountService::open().
Subscription openDirectory(std::shared_ptr<CallThreads> threads, AccountSigns signs,
                           std::function<void(std::unique_ptr<AccountDirectory>)> opened);

}  // namespace orvane::host
