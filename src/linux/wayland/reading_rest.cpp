#include "linux/wayland/reading_rest.h"

#include <algorithm>

namespace orvane::host::wayland {
namespace {
constexpr int alertAfterChange = 3;
}

ReadingRest::ReadingRest(DisplaySource& source, bool mayConnectAgain)
    : source_(source), mayConnectAgain_(mayConnectAgain) {}

void ReadingRest::add(const AwaitingWindow& window) { windows_.push_back(&window); }
void ReadingRest::remove(const AwaitingWindow& window) { std::erase(windows_, &window); }

void ReadingRest::beat(Date second) {
  if (second_ != second && alertSeconds_ > 0) --alertSeconds_;
  second_ = second;
  listen();
}

void ReadingRest::restIfNobodyWaits() {
  if (!mayConnectAgain_ || somebodyWaits() || !somebodyDraws()) return;
  if (!outputs_) {
    outputs_ = std::make_unique<OutputWatch>([this] {
      alertSeconds_ = alertAfterChange;
      listen();
    });
  }
  if (outputs_->isListening() && alertSeconds_ == 0) source_.rest();
}

bool ReadingRest::somebodyWaits() const {
  return std::any_of(windows_.begin(), windows_.end(),
                     [](const auto* it) { return it->awaits() == Awaits::anAnswer; });
}

bool ReadingRest::somebodyDraws() const {
  return std::any_of(windows_.begin(), windows_.end(),
                     [](const auto* it) { return it->awaits() == Awaits::nextSecond; });
}

}  // namespace orvane::host::wayland
