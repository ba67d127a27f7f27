#include "linux/calendars/event_store.h"

#include <algorithm>
#include <array>
#include <utility>

namespace orvane::host {
namespace {

KindAccess accessTo(EKEntityType type, const ProviderState& state) {
  return type == EKEntityType::event ? state.events : state.reminders;
}

// What is shared with worker threads that may outlast the store.
struct Sources {
  std::vector<std::unique_ptr<CalendarProvider>> providers;
  std::function<std::optional<Date>(const DateComponents&)> instantOf;
};

bool isDueWithin(const EKReminder& reminder, const EKReminderPredicate& predicate,
                 const Sources& sources) {
  if (!predicate.dueDateStarting && !predicate.dueDateEnding) return true;
  if (!reminder.dueDateComponents || !sources.instantOf) return false;
  const auto due = sources.instantOf(*reminder.dueDateComponents);
  if (!due) return false;
  if (predicate.dueDateStarting && *due < *predicate.dueDateStarting) return false;
  return !predicate.dueDateEnding || *due <= *predicate.dueDateEnding;
}

std::vector<EKReminder> openReminders(const Sources& sources,
                                      const EKReminderPredicate& predicate) {
  std::vector<EKReminder> all;
  for (const auto& provider : sources.providers) {
    for (auto& reminder : provider->openReminders(predicate.calendarIdentifiers)) {
      if (isDueWithin(reminder, predicate, sources)) all.push_back(std::move(reminder));
    }
  }
  return all;
}

class MergedEventStore final : public EventStore {
 public:
  MergedEventStore(EventStoreOptions options, MainActor& actor, NotificationCenter& notifications)
      : actor_(actor),
        notifications_(notifications),
        patience_(options.patience),
        sources_(std::make_shared<Sources>(
            Sources{std::move(options.providers), std::move(options.instantOf)})) {}
  ~MergedEventStore() override {
    for (const auto& provider : sources_->providers) provider->stop();
  }
  MergedEventStore(const MergedEventStore&) = delete;

  [[nodiscard]] EKAuthorizationStatus authorizationStatus(EKEntityType type) const override {
    if (!answered_[index(type)]) return EKAuthorizationStatus::notDetermined;
    return isGranted(type) ? EKAuthorizationStatus::fullAccess : EKAuthorizationStatus::denied;
  }
  void requestFullAccessToEvents(AccessCompletion completion) override {
    request(EKEntityType::event, std::move(completion));
  }
  void requestFullAccessToReminders(AccessCompletion completion) override {
    request(EKEntityType::reminder, std::move(completion));
  }

  [[nodiscard]] std::optional<std::vector<EKCalendar>> calendars(EKEntityType type) override {
    std::vector<EKCalendar> all;
    for (const auto& provider : sources_->providers) {
      auto some = provider->calendars(type);
      std::move(some.begin(), some.end(), std::back_inserter(all));
    }
    return all;
  }

  [[nodiscard]] std::vector<EKEvent> events(const EKEventPredicate& predicate) override {
    std::vector<EKEvent> all;
    for (const auto& provider : sources_->providers) {
      auto some = provider->events(predicate.start, predicate.end, predicate.calendarIdentifiers);
      std::move(some.begin(), some.end(), std::back_inserter(all));
    }
    std::stable_sort(all.begin(), all.end(),
                     [](const EKEvent& a, const EKEvent& b) { return a.startDate < b.startDate; });
    return all;
  }

  void fetchReminders(const EKReminderPredicate& predicate,
                      RemindersCompletion completion) override {
    actor_.runOnWorker([sources = sources_, predicate, completion = std::move(completion)] {
      completion(openReminders(*sources, predicate));
    });
  }

  void systemChanged() override {
    if (!started_) return;
    announcement_ =
        actor_.after(Duration::zero(), [this] { notifications_.post(EKEventStoreChanged); });
  }

 private:
  struct Request {
    EKEntityType type;
    AccessCompletion completion;
  };

  static std::size_t index(EKEntityType type) { return type == EKEntityType::event ? 0 : 1; }

  void request(EKEntityType type, AccessCompletion completion) {
    waiting_.push_back({type, std::move(completion)});
    if (!started_) {
      startProviders();
    } else if (!isWaiting()) {
      answerLater();
    }
  }

  void startProviders() {
    started_ = true;
    unready_ = sources_->providers.size();
    limit_ = actor_.after(patience_, [this] {
      limit_.cancel();
      answerAll();
    });
    for (const auto& provider : sources_->providers) {
      provider->start([this] { noteReady(); },
                      [this] { notifications_.post(EKEventStoreChanged); });
    }
    if (unready_ == 0) {
      limit_.cancel();
      answerLater();
    }
  }

  // Somebody is not ready yet, and may still be waited for.
  [[nodiscard]] bool isWaiting() const { return static_cast<bool>(limit_); }

  void noteReady() {
    --unready_;
    if (!isWaiting()) return notifications_.post(EKEventStoreChanged);
    if (unready_ > 0) return;
    limit_.cancel();
    answerAll();
  }

  void answerLater() {
    answering_ = actor_.after(Duration::zero(), [this] { answerAll(); });
  }

  void answerAll() {
    // Completions may make new requests, which wait for a turn of their own.
    for (auto& request : std::exchange(waiting_, {})) {
      answered_[index(request.type)] = true;
      if (auto failure = commonFailure()) {
        request.completion(false, EKError{*failure});
      } else {
        request.completion(isGranted(request.type), std::nullopt);
      }
    }
  }

  [[nodiscard]] bool isGranted(EKEntityType type) const {
    if (commonFailure()) return false;
    bool refused = false;
    for (const auto& provider : sources_->providers) {
      const auto access = accessTo(type, provider->state());
      if (access == KindAccess::readable) return true;
      refused = refused || access == KindAccess::refused;
    }
    return !refused;
  }

  // The first provider's sentence, when every provider that there is failed.
  [[nodiscard]] std::optional<std::string> commonFailure() const {
    std::optional<std::string> first;
    for (const auto& provider : sources_->providers) {
      const auto state = provider->state();
      if (state.isAbsent) continue;
      if (!state.failure) return std::nullopt;
      if (!first) first = state.failure;
    }
    return first;
  }

  MainActor& actor_;
  NotificationCenter& notifications_;
  const std::chrono::milliseconds patience_;
  std::shared_ptr<Sources> sources_;
  bool started_ = false;
  std::size_t unready_ = 0;
  std::array<bool, 2> answered_{};
  std::vector<Request> waiting_;
  Subscription limit_;
  Subscription answering_;
  Subscription announcement_;
};

}  // namespace

std::unique_ptr<EventStore> makeEventStore(EventStoreOptions options, MainActor& actor,
                                           NotificationCenter& notifications) {
  return std::make_unique<MergedEventStore>(std::move(options), actor, notifications);
}

}  // namespace orvane::host
