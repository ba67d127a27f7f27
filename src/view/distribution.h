#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace orvane::detail {

// The lengths along a stack that a child can take.
struct LengthRange {
  double min = 0;  // its answer when it is offered nothing
  double max = 0;  // its answer when it is offered everything
  // A spacer: the others are served first, and it is only sure of its least length.
  bool isSpacer = false;
};

// The length to offer to each child when `available` points, spacings already taken off, are
// shared out. The least flexible children are served first, each with an even part of what is
// left; what it does not take goes to the later ones. `answer(child, offer)` tells what it takes.
std::vector<double> distribute(const std::vector<LengthRange>& children, double available,
                               const std::function<double(std::size_t, double)>& answer);

}  // namespace orvane::detail
