#pragma once

#include <functional>

#include "foundation/date.h"
#include "foundation/subscription.h"
#include "view/geometry.h"
#include "view/view.h"

namespace orvane {

// The view at the root of a window. Main thread only.
class RootView {
 public:
  virtual ~RootView() = default;

  // What the window of this size shows at this instant.
  [[nodiscard]] virtual View body(Date now, Size size) = 0;
  // Tells that something it shows is about to change. Build the body again in a later turn of the
  // loop, when the change is in place.
  virtual Subscription onWillChange(std::function<void()> observer) = 0;
};

}  // namespace orvane
