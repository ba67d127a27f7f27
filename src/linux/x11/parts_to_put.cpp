#include "linux/x11/parts_to_put.h"

#include <algorithm>

namespace orvane::host::x11 {

namespace {

bool contains(const PixelRect& whole, const PixelRect& part) {
  return intersectionOf(whole, part) == part;
}

}  // namespace

void PartsToPut::add(const PixelRect& part) {
  if (part.isEmpty()) return;
  if (std::any_of(parts_.begin(), parts_.end(),
                  [&](const PixelRect& known) { return contains(known, part); })) {
    return;
  }
  std::erase_if(parts_, [&](const PixelRect& known) { return contains(part, known); });
  parts_.push_back(part);
  if (parts_.size() <= most) return;
  PixelRect all;
  for (const auto& each : parts_) all = unionOf(all, each);
  parts_ = {all};
}

void PartsToPut::replaceFirst(const PixelRect& left) {
  if (left.isEmpty()) {
    parts_.erase(parts_.begin());
  } else {
    parts_.front() = left;
  }
}

}  // namespace orvane::host::x11
