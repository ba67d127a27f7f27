#include "linux/mainloop/post_queue.h"

#include <glib.h>

#include <mutex>
#include <utility>
#include <vector>

namespace orvane::host {

struct PostQueue::State {
  std::mutex mutex;
  std::vector<std::function<void()>> pending;
  bool closed = false;
  GSource* source = nullptr;

  bool hasWork() {
    const std::lock_guard lock(mutex);
    return !pending.empty();
  }
  // Work posted while a batch runs belongs to the next turn.
  std::vector<std::function<void()>> takeBatch() {
    const std::lock_guard lock(mutex);
    return std::exchange(pending, {});
  }
};

// A main-context source that is ready whenever the queue holds work.
struct PostQueue::Source {
  GSource base;
  State* state;

  static State& stateOf(GSource* source) { return *reinterpret_cast<Source*>(source)->state; }
  static gboolean prepare(GSource* source, gint* timeout) {
    *timeout = -1;
    return stateOf(source).hasWork();
  }
  static gboolean check(GSource* source) { return stateOf(source).hasWork(); }
  static gboolean dispatch(GSource* source, GSourceFunc, gpointer) {
    State& state = stateOf(source);
    for (auto& work : state.takeBatch()) {
      if (state.closed) break;
      // Each piece of work dies before the next runs, as if it had had a turn of its own.
      const auto once = std::move(work);
      once();
    }
    return G_SOURCE_CONTINUE;
  }
};

PostQueue::PostQueue() : state_(std::make_unique<State>()) {
  static GSourceFuncs functions{Source::prepare, Source::check, Source::dispatch,
                                nullptr,         nullptr,       nullptr};
  state_->source = g_source_new(&functions, sizeof(Source));
  reinterpret_cast<Source*>(state_->source)->state = state_.get();
  g_source_set_name(state_->source, "posts");
  g_source_attach(state_->source, nullptr);
}

PostQueue::~PostQueue() {
  close();
  g_source_destroy(state_->source);
  g_source_unref(state_->source);
}

void PostQueue::post(std::function<void()> work) {
  {
    const std::lock_guard lock(state_->mutex);
    if (state_->closed) return;
    state_->pending.push_back(std::move(work));
    if (state_->pending.size() > 1) return;  // woken already
  }
  g_main_context_wakeup(nullptr);
}

void PostQueue::close() {
  std::vector<std::function<void()>> dropped;
  const std::lock_guard lock(state_->mutex);
  state_->closed = true;
  dropped.swap(state_->pending);
}

}  // namespace orvane::host
