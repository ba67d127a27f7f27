#include "linux/calendars/folder_provider.h"

#include <cstdio>
#include <utility>

#include "linux/calendars/change_burst.h"
#include "linux/calendars/shared_library.h"

namespace orvane::host {
namespace {

// The main thread's half: when to look, and whom to tell. The other half, which lists and reads,
// is shared with the worker threads and may outlast this one for a moment.
class FolderProvider final : public CalendarProvider {
 public:
  FolderProvider(FolderOptions options, MainActor& actor)
      : options_(std::move(options)),
        actor_(actor),
        burst_(
            actor, [this] { beginLook(&FolderProvider::endBurst); }, [this] { announce(); }) {}

  void start(Callback ready, Callback changed) override {
    changed_ = std::move(changed);
    const std::weak_ptr<int> alive = alive_;
    library_ = std::make_shared<SharedLibrary>(
        options_, actor_.now(), [this] { burst_.signal(); },
        [this, alive, &actor = actor_] {
          actor.post([this, alive] {
            if (!alive.expired()) lookAgain();
          });
        });
    ready_ = std::move(ready);
    beginLook(&FolderProvider::endFirstLook);
  }

  void stop() override {
    alive_.reset();
    if (library_) library_->stop();
    rescan_.cancel();
    retry_.cancel();
    burst_.stop();
  }

  [[nodiscard]] ProviderState state() const override {
    return library_ ? library_->state() : ProviderState{};
  }
  [[nodiscard]] std::vector<EKCalendar> calendars(EKEntityType type) override {
    return library_ ? library_->calendars(type) : std::vector<EKCalendar>();
  }
  [[nodiscard]] std::vector<EKEvent> events(Date start, Date end,
                                            const CalendarSelection& selection) override {
    return library_ ? library_->events(start, end, selection) : std::vector<EKEvent>();
  }
  [[nodiscard]] std::vector<EKReminder> openReminders(const CalendarSelection& selection) override {
    return library_ ? library_->openReminders(selection) : std::vector<EKReminder>();
  }

 private:
  using Look = SharedLibrary::Look;
  using EndOfLook = void (FolderProvider::*)();

  // One look at a time: what is asked for meanwhile is one more look afterwards.
  void beginLook(EndOfLook end) {
    waiting_.push_back(end);
    if (looking_.empty()) lookForWaiting();
  }

  void lookForWaiting() {
    looking_ = std::exchange(waiting_, {});
    const auto thoroughness = ready_ ? SharedLibrary::Thoroughness::asLongAsAQuery
                                     : SharedLibrary::Thoroughness::toTheEnd;
    const std::weak_ptr<int> alive = alive_;
    actor_.runOnWorker([this, alive, thoroughness, library = library_, &actor = actor_] {
      const Look look = library->look(thoroughness);
      actor.post([this, alive, look] {
        if (!alive.expired()) endLook(look);
      });
    });
  }

  void endLook(const Look& look) {
    for (const auto end : std::exchange(looking_, {})) (this->*end)();
    plan(look);
    if (looking_.empty() && !waiting_.empty()) lookForWaiting();
  }

  // A look that no change has asked for: it goes on reading, or checks what cannot be watched.
  void lookAgain() { beginLook(&FolderProvider::endQuietLook); }

  void endFirstLook() {
    library_->takeChanged();
    announcedState_ = library_->state();
    std::exchange(ready_, nullptr)();
  }
  void endBurst() {
    const bool isOtherState = library_->state() != announcedState_;
    burst_.looked(library_->takeChanged(), isOtherState);
  }
  void endQuietLook() {
    if (library_->takeChanged() || library_->state() != announcedState_) announce();
  }

  void announce() {
    announcedState_ = library_->state();
    changed_();
  }

  // What is to follow a look by itself.
  void plan(const Look& look) {
    if (!look.isComplete) lookAgain();
    if (look.hasSuspects) {
      retry_ = actor_.after(options_.suspicion, [this] {
        library_->doubtSuspects();
        lookAgain();
      });
    }
    if (look.isOutOfWatches) reportOnce();
    if (!look.needsRescans) return rescan_.cancel();
    rescan_ = actor_.after(options_.slowRescan, [this] {
      library_->doubtEverything();
      lookAgain();
    });
  }

  void reportOnce() {
    if (std::exchange(isReported_, true)) return;
    std::fprintf(stderr,
                 "orvane: the system has no file watches left; "
                 "calendar folders are looked at every %lld seconds instead\n",
                 static_cast<long long>(options_.slowRescan.count()));
  }

  FolderOptions options_;
  MainActor& actor_;
  Callback ready_;
  Callback changed_;
  std::shared_ptr<SharedLibrary> library_;
  ProviderState announcedState_;
  bool isReported_ = false;
  std::vector<EndOfLook> looking_;  // what follows the look that is under way
  std::vector<EndOfLook> waiting_;  // … and the next one
  ChangeBurst burst_;
  Subscription rescan_;
  Subscription retry_;
  // Main thread: gone once the provider was stopped.
  std::shared_ptr<int> alive_ = std::make_shared<int>(0);
};

}  // namespace

std::unique_ptr<CalendarProvider> makeFolderProvider(FolderOptions options, MainActor& actor) {
  return std::make_unique<FolderProvider>(std::move(options), actor);
}

}  // namespace orvane::host
