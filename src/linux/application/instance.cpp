#include "linux/application/instance.h"

#include <utility>

#include "linux/application/bus_instance.h"
#include "linux/application/lock_instance.h"

namespace orvane::host {

InstanceClaim claimInstance(ApplicationOptions options, MainActor& mainActor) {
  if (options.connection) return application::claimOnBus(std::move(options), mainActor);
  if (!options.runtimeFolder.empty()) {
    return application::claimByLock(std::move(options), mainActor);
  }
  return {InstanceOutcome::first, nullptr};
}

}  // namespace orvane::host
