#pragma once

#include <chrono>
#include <functional>

#include "foundation/date.h"
#include "foundation/main_actor.h"
#include "foundation/subscription.h"

namespace orvane {

// How patiently a desktop that was lost is waited for.
struct ReturnPolicy {
  Duration firstDelay = std::chrono::milliseconds(250);  // doubled after each attempt in vain
  Duration longestDelay = std::chrono::seconds(4);
  Duration limit = std::chrono::seconds(60);    // from the loss until it is given up
  Duration loyalty = std::chrono::seconds(20);  // for so long only the kind that was lost will do
  // One attempt may wait this long for a desktop that lets us in and then says nothing. It is half
  // the time since the loss, within these bounds: one that is slow every time is let in in the end.
  Duration patience = std::chrono::seconds(3);
  Duration longestPatience = std::chrono::seconds(10);
  // How often it is asked, between attempts, whether the session has ended.
  Duration betweenQuestions = std::chrono::milliseconds(500);
  // A desktop that has stood for so long is trusted again: the delays begin anew.
  Duration settled = std::chrono::seconds(10);
  // Connections that were ended because of what we asked, before one of them stood for as long as
  // it takes to forgive it. Whatever we do wrong would only be done again.
  int mostRefusals = 3;
  Duration forgiven = std::chrono::hours(1);
};

// Decides when a lost desktop is tried to be had again, and when there is no more use in it. Main
// thread only.
class ReturnAttempts {
 public:
  enum class End { limitPassed, sessionEnded, refused };
  struct Hooks {
    // Tries once, for no longer than that, and answers whether the desktop is there.
    std::function<bool(Duration patience)> attempt;
    // Asked before and after each attempt, and meanwhile.
    std::function<bool()> sessionHasEnded;
    // Nothing is tried any more. May destroy everything but the attempts.
    std::function<void(End)> gaveUp;
  };

  ReturnAttempts(MainActor& actor, ReturnPolicy policy, Hooks hooks);
  ReturnAttempts(const ReturnAttempts&) = delete;
  ReturnAttempts& operator=(const ReturnAttempts&) = delete;

  // The desktop is there from now on.
  void stands();
  // It is not any more: the first attempt follows after a delay.
  void lost(bool isRefusal);

 private:
  void wait();
  void tryAgain();
  bool triesOnce(Duration patience);
  void tryTheLastTime();
  void askForSession();
  void giveUp(End end);
  void waitNoMore();
  void forgiveLater();
  [[nodiscard]] Duration patience() const;
  [[nodiscard]] Duration leastPatience() const;

  MainActor& actor_;
  const ReturnPolicy policy_;
  const Hooks hooks_;
  Duration delay_;
  int refusals_ = 0;
  Date lostAt_;
  Subscription retry_;
  Subscription question_;
  Subscription limit_;
  Subscription settling_;
};

}  // namespace orvane
