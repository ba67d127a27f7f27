#pragma once

#include <functional>
#include <utility>

#include "foundation/main_actor.h"

namespace orvane::tools {

// A main actor whose wall clock stands still. Everything else is the other's, which must outlive
// it.
class PinnedActor final : public MainActor {
 public:
  PinnedActor(MainActor& actor, Date now) : actor_(actor), now_(now) {}
  ~PinnedActor() override { tasks().destroyAll(); }
  PinnedActor(const PinnedActor&) = delete;

  void post(std::function<void()> work) override { actor_.post(std::move(work)); }
  Subscription after(Duration delay, std::function<void()> work) override {
    return actor_.after(delay, std::move(work));
  }
  void runOnWorker(std::function<void()> work) override { actor_.runOnWorker(std::move(work)); }
  [[nodiscard]] Date now() const override { return now_; }

 private:
  MainActor& actor_;
  Date now_;
};

}  // namespace orvane::tools
