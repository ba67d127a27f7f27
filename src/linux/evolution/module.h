#pragma once

#include "foundation/main_actor.h"
#include "linux/accounts/account_service.h"

namespace orvane::host {

// How the module is entered. Program and module pass C++ objects to each other, so they must come
// from one build; the number is raised with every change of what passes between them.
inline constexpr const char* moduleEntry = "orvaneEvolution";
inline constexpr const char* moduleBuild = ORVANE_VERSION "-1";

extern "C" {
// Null when it was built for another program. The caller owns what it gets and destroys it before
// the actor.
using ModuleEntry = AccountService*(const char* build, MainActor* actor);
}

}  // namespace orvane::host
