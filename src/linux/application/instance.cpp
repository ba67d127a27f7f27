#include "linux/application/instance.h"

#include <utility>

#include "linux/application/bus_instance.h"
#include "linux/application/lock_instance.h"

namespace orvane::host {
namespace {

class DoublyGuardedInstance final : public Instance {
 public:
  DoublyGuardedInstance(std::unique_ptr<Instance> onBus, std::unique_ptr<Instance> byLock)
      : onBus_(std::move(onBus)), byLock_(std::move(byLock)) {}

 private:
  // The lock goes first: the next start takes it only once it has the name.
  const std::unique_ptr<Instance> onBus_;
  const std::unique_ptr<Instance> byLock_;
};

}  // namespace

// Of two at once that have one guard each, the one with the lock stays, so that they do not both
// make way.
InstanceClaim claimInstance(ApplicationOptions options, MainActor& mainActor) {
  InstanceClaim onBus;
  if (options.connection) onBus = application::claimOnBus(options, mainActor);
  if (onBus.outcome == InstanceOutcome::forwarded || options.runtimeFolder.empty()) return onBus;
  auto byLock = application::claimByLock(std::move(options), mainActor);
  if (byLock.outcome == InstanceOutcome::forwarded) return byLock;
  return {InstanceOutcome::first, std::make_unique<DoublyGuardedInstance>(
                                      std::move(onBus.instance), std::move(byLock.instance))};
}

}  // namespace orvane::host
