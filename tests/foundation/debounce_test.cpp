#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>

#include "fakes/manual_main_actor.h"
#include "foundation/main_actor.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;

TEST(Debounce, DeliversOnceAfterTheQuietTime) {
  fakes::ManualMainActor actor;
  int delivered = 0;
  Debounce debounce(actor, 250ms, [&] { ++delivered; });
  debounce.signal();
  actor.advance(249ms);
  EXPECT_EQ(delivered, 0);
  actor.advance(1ms);
  EXPECT_EQ(delivered, 1);
  actor.advance(1h);
  EXPECT_EQ(delivered, 1);
}

TEST(Debounce, EachSignalBeginsTheWaitAnew) {
  fakes::ManualMainActor actor;
  int delivered = 0;
  Debounce debounce(actor, 1s, [&] { ++delivered; });
  for (int signal = 0; signal < 100; ++signal) {
    debounce.signal();
    actor.advance(999ms);
  }
  EXPECT_EQ(delivered, 0);
  actor.advance(1ms);
  EXPECT_EQ(delivered, 1);
}

TEST(Debounce, DestroyedWhileWaitingItDeliversNothing) {
  fakes::ManualMainActor actor;
  int delivered = 0;
  std::optional<Debounce> debounce(std::in_place, actor, 1s, [&] { ++delivered; });
  debounce->signal();
  debounce.reset();
  actor.advance(1h);
  EXPECT_EQ(delivered, 0);
}

TEST(Debounce, MaySignalAgainAndBeDestroyedFromWithin) {
  fakes::ManualMainActor actor;
  int delivered = 0;
  std::unique_ptr<Debounce> debounce;
  debounce = std::make_unique<Debounce>(actor, 1s, [&] {
    if (++delivered < 3) debounce->signal();
    if (delivered == 3) debounce.reset();
  });
  debounce->signal();
  actor.advance(1h);
  EXPECT_EQ(delivered, 3);
}

}  // namespace
}  // namespace orvane
