#pragma once

#include <functional>
#include <utility>

#include "foundation/main_actor.h"

namespace orvane::host {

// Gathers a burst of changes into one look at them and one announcement, which comes at most a
// tenth of a second after the last change: sooner when the look is done and found something, in
// any case then when it is still going on. Main thread only.
class ChangeBurst {
 public:
  // `look` begins to find out what changed; looked() is to be called when that is done.
  ChangeBurst(MainActor& actor, std::function<void()> look, std::function<void()> announce)
      : actor_(actor), look_(std::move(look)), announce_(std::move(announce)) {}

  void signal();
  // Nothing is called any more.
  void stop();
  // `isUrgent` is a find that must be announced even when an announcement was made meanwhile.
  void looked(bool foundChange, bool isUrgent);

 private:
  void beginLook();
  void announce();

  MainActor& actor_;
  std::function<void()> look_;
  std::function<void()> announce_;
  bool isLooking_ = false;
  bool isPending_ = false;  // signalled while looking
  bool foundChange_ = false;
  bool isUrgent_ = false;
  Subscription quiet_;
  Subscription longest_;
  Subscription latest_;
};

}  // namespace orvane::host
