#include "agenda/store_access.h"

#include "foundation/task_waiting.h"

namespace orvane {

Task<AccessAnswer> requestFullAccess(MainActor& actor, std::shared_ptr<EKEventStore> store,
                                     EKEntityType type) {
  const auto status = store->authorizationStatus(type);
  if (status == EKAuthorizationStatus::fullAccess) co_return AccessAnswer(true);
  if (status != EKAuthorizationStatus::notDetermined) co_return AccessAnswer(false);
  Continuation<AccessAnswer> answer(actor, [store, type](auto resume) {
    auto completion = [resume](bool granted, std::optional<EKError> error) {
      resume(AccessAnswer(granted, std::move(error)));
    };
    if (type == EKEntityType::event) {
      store->requestFullAccessToEvents(std::move(completion));
    } else {
      store->requestFullAccessToReminders(std::move(completion));
    }
  });
  co_return co_await answer;
}

}  // namespace orvane
