#pragma once

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "foundation/main_actor.h"
#include "platform/ek_event_store.h"

namespace orvane::tools {

// A store as a user sees it who has refused access to one kind of items, or to both.
class DenyingStore final : public EKEventStore {
 public:
  DenyingStore(std::shared_ptr<EKEventStore> store, MainActor& actor, bool deniesEvents,
               bool deniesReminders)
      : store_(std::move(store)),
        actor_(actor),
        deniesEvents_(deniesEvents),
        deniesReminders_(deniesReminders) {}

  [[nodiscard]] EKAuthorizationStatus authorizationStatus(EKEntityType type) const override {
    const auto status = store_->authorizationStatus(type);
    const bool isAsked = type == EKEntityType::event ? eventsAsked_ : remindersAsked_;
    return isAsked ? EKAuthorizationStatus::denied : status;
  }
  void requestFullAccessToEvents(AccessCompletion completion) override {
    if (!deniesEvents_) return store_->requestFullAccessToEvents(std::move(completion));
    eventsAsked_ = true;
    refuse(std::move(completion));
  }
  void requestFullAccessToReminders(AccessCompletion completion) override {
    if (!deniesReminders_) return store_->requestFullAccessToReminders(std::move(completion));
    remindersAsked_ = true;
    refuse(std::move(completion));
  }
  [[nodiscard]] std::optional<std::vector<EKCalendar>> calendars(EKEntityType type) override {
    return store_->calendars(type);
  }
  [[nodiscard]] std::vector<EKEvent> events(const EKEventPredicate& predicate) override {
    return store_->events(predicate);
  }
  void fetchReminders(const EKReminderPredicate& predicate,
                      RemindersCompletion completion) override {
    store_->fetchReminders(predicate, std::move(completion));
  }

 private:
  void refuse(AccessCompletion completion) {
    actor_.post([completion = std::move(completion)] { completion(false, std::nullopt); });
  }

  std::shared_ptr<EKEventStore> store_;
  MainActor& actor_;
  bool deniesEvents_;
  bool deniesReminders_;
  bool eventsAsked_ = false;
  bool remindersAsked_ = false;
};

}  // namespace orvane::tools
