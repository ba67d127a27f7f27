#pragma once

#include "foundation/date.h"
#include "view/pixel_grid.h"

namespace orvane {

// How large a window is kept while what is drawn in it changes: it grows at once and shrinks only
// when it was too large for a while, so that a text that changes its length does not cost a new
// buffer each time.
template <WholeRect Area>
class DrawnArea {
 public:
  static constexpr TimeInterval patience = 10;

  // `needed` is not empty and lies within `bounds`. Answers whether the area changed.
  bool update(const Area& needed, const Area& bounds, Date now) {
    const Area grown = intersectionOf(unionOf(area_, needed), bounds);
    if (grown != area_) return become(grown, now);
    recentlyNeeded_ = unionOf(recentlyNeeded_, needed);
    // Also where the clock was set back.
    if (recentlyNeeded_ == area_ || now < tooLargeSince_) {
      recentlyNeeded_ = needed == area_ ? Area{} : needed;
      tooLargeSince_ = now;
      return false;
    }
    if (now - tooLargeSince_ < patience) return false;
    return become(recentlyNeeded_, now);
  }
  // Empty before the first update.
  [[nodiscard]] const Area& area() const { return area_; }
  void reset() { *this = DrawnArea(); }

 private:
  bool become(const Area& area, Date now) {
    area_ = area;
    recentlyNeeded_ = {};
    tooLargeSince_ = now;
    return true;
  }

  Area area_;
  Area recentlyNeeded_;  // all that was needed since `tooLargeSince_`
  Date tooLargeSince_;
};

}  // namespace orvane
