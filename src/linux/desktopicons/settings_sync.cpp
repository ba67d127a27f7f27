#include "linux/desktopicons/settings_sync.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace orvane::host::desktopicons {
namespace {

constexpr guint kLimitMilliseconds = 1000;
// The program has a second to end in.
constexpr std::chrono::milliseconds kLimitAtTheEnd{300};

}  // namespace

class SettingsSync::Arrival {
 public:
  void note() {
    const std::lock_guard lock(mutex_);
    isNoted_ = true;
    changed_.notify_all();
  }
  [[nodiscard]] bool waitFor(std::chrono::milliseconds limit) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, limit, [this] { return isNoted_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool isNoted_ = false;
};

SettingsSync::~SettingsSync() {
  if (limit_ != 0) g_source_remove(limit_);
}

void SettingsSync::settle(bool isTaken, std::function<void(Outcome)> told) {
  if (!isTaken) return told(Outcome::refused);
  using Shared = std::shared_ptr<Arrival>;
  told_ = std::move(told);
  arrival_ = std::make_shared<Arrival>();
  waiting_ = std::make_unique<gio::Cancellation>();
  const gio::ObjectPtr<GTask> task(g_task_new(nullptr, waiting_->get(), &arrived, this));
  g_task_set_task_data(task.get(), new Shared(arrival_),
                       [](gpointer shared) { delete static_cast<Shared*>(shared); });
  g_task_run_in_thread(task.get(), [](GTask* it, gpointer, gpointer shared, GCancellable*) {
    g_settings_sync();
    (*static_cast<Shared*>(shared))->note();
    g_task_return_boolean(it, TRUE);
  });
  const auto late = [](gpointer self) -> gboolean {
    auto& sync = *static_cast<SettingsSync*>(self);
    sync.limit_ = 0;
    sync.tell(Outcome::unknown);
    return G_SOURCE_REMOVE;
  };
  limit_ = g_timeout_add(kLimitMilliseconds, late, this);
}

void SettingsSync::finish() {
  if (told_) tell(arrival_->waitFor(kLimitAtTheEnd) ? Outcome::done : Outcome::unknown);
}

// An answer that comes after it was given up is not ours any more, as we may not be there.
void SettingsSync::arrived(GObject*, GAsyncResult* result, gpointer self) {
  if (!g_task_propagate_boolean(G_TASK(result), nullptr)) return;
  static_cast<SettingsSync*>(self)->tell(Outcome::done);
}

void SettingsSync::tell(Outcome outcome) {
  waiting_.reset();
  if (limit_ != 0) g_source_remove(std::exchange(limit_, 0));
  std::exchange(told_, nullptr)(outcome);
}

}  // namespace orvane::host::desktopicons
