#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "foundation/subscription.h"
#include "linux/evolution/call_threads.h"
#include "linux/gio/handles.h"

namespace orvane::host {

// Makes a call that blocks on a thread of its own and hands its result to the main thread. Ending
// the subscription cancels the call as far as what it calls can be cancelled; where it cannot, the
// thread is kept until the service or the bus has an answer. A result that nobody wants any more is
// destroyed on whatever thread it is, so it must be one that bears that: a value, or a handle that
// counts its owners, and nothing that hears signals.
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
