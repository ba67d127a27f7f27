#include "linux/wayland/screens.h"

#include <algorithm>
#include <utility>

#include "platform/screen_number.h"

namespace orvane::host::wayland {

std::optional<std::int64_t> screenNumber(const OutputDescription& output) {
  return screenNumberOf(output.connector, output.make, output.model);
}

NSScreen screenOf(const OutputDescription& output, const std::string& identity) {
  return {output.frame, output.frame, screenNumber(output), identity};
}

std::optional<std::size_t> mainOutput(const std::vector<OutputDescription>& outputs) {
  if (outputs.empty()) return std::nullopt;
  const auto rank = [](const OutputDescription& output) {
    const auto& frame = output.frame;
    return std::pair(frame.x * frame.x + frame.y * frame.y, output.connector);
  };
  const auto nearest =
      std::min_element(outputs.begin(), outputs.end(),
                       [&](const auto& a, const auto& b) { return rank(a) < rank(b); });
  return static_cast<std::size_t>(nearest - outputs.begin());
}

}  // namespace orvane::host::wayland
