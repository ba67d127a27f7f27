#pragma once

#include "dashboard/next_up_card.h"
#include "dashboard/remembered_card.h"

namespace orvane {

// Keeps the next deadline from tick to tick until it is reached, and of its card all but the
// digits. Of what was later than an instant, the earliest stays the earliest until it has passed.
class RememberedNextUp {
 public:
  // `find` answers the next deadline at `now`.
  template <class Find>
  View at(const BoardState& state, Date now, const CardEnvironment& environment, Find find) {
    if (!holds(state, now)) {
      card_.deadline = find();
      still_ = card_.still(environment);
      state_ = state;
      foundAt_ = now;
      isKnown_ = true;
    }
    card_.now = now;
    return card_.body(environment, still_);
  }

 private:
  // Not after the clock was set back: what had passed may come again.
  [[nodiscard]] bool holds(const BoardState& state, Date now) const {
    return isKnown_ && state == state_ && now >= foundAt_ &&
           (!card_.deadline || now < card_.deadline->date);
  }

  bool isKnown_ = false;
  BoardState state_;
  Date foundAt_ = {};
  NextUpCard card_;
  NextUpCard::Still still_;
};

}  // namespace orvane
