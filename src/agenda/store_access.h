#pragma once

#include <memory>
#include <optional>
#include <utility>

#include "foundation/main_actor.h"
#include "foundation/task.h"
#include "platform/ek_event_store.h"

namespace orvane {

// How asking for access ended: granted, refused, or failed with a sentence for the user.
struct AccessAnswer {
  AccessAnswer(bool isGranted, std::optional<EKError> failure = std::nullopt)
      : granted(isGranted), error(std::move(failure)) {}

  bool granted;
  std::optional<EKError> error;
};

// Asks for full access to events or reminders. The user is asked only where that was never decided;
// any other state short of full access counts as a refusal.
[[nodiscard]] Task<AccessAnswer> requestFullAccess(MainActor& actor,
                                                   std::shared_ptr<EKEventStore> store,
                                                   EKEntityType type);

}  // namespace orvane
