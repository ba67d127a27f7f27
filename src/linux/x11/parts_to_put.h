#pragma once

#include <vector>

#include "view/pixel_grid.h"

namespace orvane::host::x11 {

// The parts of a picture that are still to be put, in the order in which they came, so that one
// that changes every second does not keep the others waiting for ever.
class PartsToPut {
 public:
  // Of more than these one is made, since each is a request of its own.
  static constexpr std::size_t most = 64;

  [[nodiscard]] bool isEmpty() const { return parts_.empty(); }
  void add(const PixelRect& part);
  // Only where there is one.
  [[nodiscard]] const PixelRect& first() const { return parts_.front(); }
  // By what is left of it; nothing: the next one is the first.
  void replaceFirst(const PixelRect& left);

 private:
  std::vector<PixelRect> parts_;
};

}  // namespace orvane::host::x11
