#pragma once

#include <memory>

#include "view/root_view.h"
#include "view/view.h"

namespace orvane::fakes {

// A root view with nothing on it.
class BlankView final : public RootView {
 public:
  [[nodiscard]] View body(Date, Size) override { return {}; }
  Subscription onWillChange(std::function<void()>) override { return {}; }
};

}  // namespace orvane::fakes
