#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "foundation/subscription.h"
#include "linux/evolution/call_threads.h"
#include "linux/gio/handles.h"

namespace orvane::host {

// Makes a call that blocks on a thread of its own and hands its result to the main thread. Ending
// the subscription cancels the call; its result is then destroyed wherever it is.
template <class Result>
Subscription callOnThread(CallThreads& threads, std::function<Result(GCancellable*)> call,
                          std::function<void(Result)> answered) {
  struct Pending {
    gio::ObjectPtr<GCancellable> cancellable{g_cancellable_new()};
    std::function<void(Result)> answered;  // main thread only
  };
  auto pending = std::make_shared<Pending>();
  pending->answered = std::move(answered);
  threads.run([pending, call = std::move(call), shared = threads.shared_from_this()] {
    if (g_cancellable_is_cancelled(pending->cancellable.get())) return;
    auto result = std::make_shared<Result>(call(pending->cancellable.get()));
    shared->post([pending, result = std::move(result)] {
      if (const auto answer = std::exchange(pending->answered, nullptr)) answer(std::move(*result));
    });
  });
  return Subscription([pending] {
    pending->answered = nullptr;
    g_cancellable_cancel(pending->cancellable.get());
  });
}

}  // namespace orvane::host
