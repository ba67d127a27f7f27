#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "dashboard/appearance.h"
#include "foundation/color.h"
#include "foundation/date.h"
#include "view/reconcile.h"
#include "view/view.h"

namespace orvane {

// What the whole board depends on, but for the passing seconds. A remembered view also ends with
// its minute, by which a changed locale or time zone shows.
struct BoardState {
  std::uint64_t changes = 0;  // announced so far
  double minute = 0;
  friend bool operator==(const BoardState&, const BoardState&) = default;
};

// How a countdown looks at an instant.
struct CountdownLook {
  std::string text;
  Color color;
  friend bool operator==(const CountdownLook&, const CountdownLook&) = default;
};

[[nodiscard]] std::vector<CountdownLook> countdownLooks(const std::vector<Date>& dates, Date now,
                                                        const DashboardAppearance& settings);

// Keeps a card's view from tick to tick while none of the countdowns on it looks different: rows
// say minutes, so most seconds change nothing.
class RememberedCard {
 public:
  // `make` answers the card's view and the dates that it counts down to.
  template <class Make>
  const View& at(const BoardState& state, Date now, const DashboardAppearance& settings,
                 Make make) {
    if (isKnown_ && state == state_ && countdownLooks(dates_, now, settings) == looks_) {
      return view_;
    }
    auto [view, dates] = make();
    // What stayed as it was is shared, so that the scene need not compare it in every tick.
    view_ = reconciled(view_, view);
    dates_ = std::move(dates);
    looks_ = countdownLooks(dates_, now, settings);
    state_ = state;
    isKnown_ = true;
    return view_;
  }

 private:
  bool isKnown_ = false;
  BoardState state_;
  std::vector<Date> dates_;
  std::vector<CountdownLook> looks_;
  View view_;
};

}  // namespace orvane
