#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "foundation/main_actor.h"

namespace orvane::host {

// How long those who ask one service wait for its answers. Whatever is asked in one turn is
// answered one after another, so each answer to one of those, or to one that asked before them,
// shows that the service is at work, and begins the others' limits anew. Who asked later shows
// nothing: a service may go on with everybody but one. Main thread only.
class SharedPatience {
 public:
  struct Limit {
    std::chrono::milliseconds quiet;    // without a sign of progress
    std::chrono::milliseconds longest;  // in any case
  };

  // The actor must outlive this, and this all who wait.
  explicit SharedPatience(MainActor& actor) : actor_(actor) {}
  SharedPatience(const SharedPatience&) = delete;
  SharedPatience& operator=(const SharedPatience&) = delete;

  // One who waits for one answer at a time.
  class Waiter {
   public:
    explicit Waiter(SharedPatience& patience);
    Waiter(const Waiter&) = delete;
    Waiter& operator=(const Waiter&) = delete;
    ~Waiter();

    // What is waited for from now on belongs to this turn.
    void join() { turn_ = patience_.currentTurn(); }
    // `expired` is called in a later turn, unless it is answered or given up before.
    void wait(const Limit& limit, std::function<void()> expired);
    // The answer is there.
    void answered();
    void giveUp();

   private:
    friend class SharedPatience;
    void renew();
    void expire();

    SharedPatience& patience_;
    std::uint64_t turn_ = 0;
    std::chrono::milliseconds quiet_{0};
    std::function<void()> expired_;
    Subscription next_;  // while it waits
    Subscription end_;
  };

 private:
  // Equal for all who ask before anything else has its turn, and greater for those who ask later.
  std::uint64_t currentTurn();
  void noteProgressOf(const Waiter& one);

  MainActor& actor_;
  std::vector<Waiter*> waiters_;
  std::uint64_t turn_ = 0;
  Subscription turnEnd_;
};

}  // namespace orvane::host
