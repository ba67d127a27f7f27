#include "view/distribution.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace orvane::detail {
namespace {

double flexibility(const LengthRange& child) {
  return std::isinf(child.min) ? 0 : child.max - child.min;
}

std::vector<std::size_t> servingOrder(const std::vector<LengthRange>& children) {
  std::vector<std::size_t> order(children.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    if (children[a].isSpacer != children[b].isSpacer) return children[b].isSpacer;
    return flexibility(children[a]) < flexibility(children[b]);
  });
  return order;
}

double takenOff(double available, double length) {
  return std::isinf(available) ? available : std::max(available - length, 0.0);
}

}  // namespace

std::vector<double> distribute(const std::vector<LengthRange>& children, double available,
                               const std::function<double(std::size_t, double)>& answer) {
  double reserved = 0;
  std::size_t waiting = 0;
  for (const auto& child : children) {
    if (child.isSpacer)
      reserved += child.min;
    else
      ++waiting;
  }
  double left = std::max(available, 0.0);
  std::size_t waitingSpacers = children.size() - waiting;
  std::vector<double> offers(children.size(), 0.0);
  for (const std::size_t child : servingOrder(children)) {
    const bool isSpacer = children[child].isSpacer;
    auto& sharers = isSpacer ? waitingSpacers : waiting;
    const double shared = isSpacer ? left : takenOff(left, reserved);
    offers[child] = shared / static_cast<double>(sharers--);
    left = takenOff(left, answer(child, offers[child]));
  }
  return offers;
}

}  // namespace orvane::detail
