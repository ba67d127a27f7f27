#pragma once

#include <gio/gio.h>

#include <memory>
#include <string>

#include "foundation/main_actor.h"
#include "linux/accounts/account_service.h"

namespace orvane::host {

struct EvolutionOptions {
  GDBusConnection* bus = nullptr;  // of the session; null: there is none
  std::string modulePath;          // need not exist
};

// The accounts of the desktop as Evolution Data Server keeps them. Its library is loaded as a
// module of ours, on a worker thread, once the bus has such a service and never without; where that
// fails, one line on standard error says why, once. The actor must outlive what is returned.
std::unique_ptr<Accounts> makeEvolutionAccounts(EvolutionOptions options, MainActor& actor);

}  // namespace orvane::host
