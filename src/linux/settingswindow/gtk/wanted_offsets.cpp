#include "linux/settingswindow/gtk/wanted_offsets.h"

namespace orvane::window {

std::optional<double> WantedOffsets::take(const std::string& part, double farthest) {
  const auto wanted = offsets_.find(part);
  if (wanted == offsets_.end() || wanted->second > farthest) return std::nullopt;
  const double offset = wanted->second;
  offsets_.erase(wanted);
  return offset;
}

}  // namespace orvane::window
