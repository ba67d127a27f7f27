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

namespace {

std::size_t rankOf(const OutputDescription& output, const std::vector<std::string>& order) {
  return static_cast<std::size_t>(std::find(order.begin(), order.end(), output.connector) -
                                  order.begin());
}

}  // namespace

std::optional<std::size_t> mainOutput(const std::vector<OutputDescription>& outputs,
                                      const std::vector<std::string>& order) {
  if (outputs.empty()) return std::nullopt;
  const auto first = std::min_element(
      outputs.begin(), outputs.end(),
      [&](const auto& a, const auto& b) { return rankOf(a, order) < rankOf(b, order); });
  if (rankOf(*first, order) < order.size()) {
    return static_cast<std::size_t>(first - outputs.begin());
  }
  const auto rank = [](const OutputDescription& output) {
    const auto& frame = output.frame;
    return std::pair(frame.x * frame.x + frame.y * frame.y, output.connector);
  };
  const auto nearest =
      std::min_element(outputs.begin(), outputs.end(),
                       [&](const auto& a, const auto& b) { return rank(a) < rank(b); });
  return static_cast<std::size_t>(nearest - outputs.begin());
}

bool isRedundant(std::size_t index, const std::vector<OutputDescription>& outputs,
                 const std::vector<std::string>& order) {
  const OutputDescription& it = outputs[index];
  for (std::size_t other = 0; other < outputs.size(); ++other) {
    if (other == index || !outputs[other].frame.contains(it.frame)) continue;
    if (outputs[other].frame != it.frame) return true;
    if (std::pair(rankOf(outputs[other], order), other) < std::pair(rankOf(it, order), index)) {
      return true;
    }
  }
  return false;
}

}  // namespace orvane::host::wayland
