#include "linux/x11/drawn_area.h"

#include "linux/x11/xcb_types.h"

namespace orvane::host::x11 {

namespace {

PixelRect unionOf(const PixelRect& a, const PixelRect& b) {
  if (a.isEmpty()) return b;
  const int x = std::min(a.x, b.x);
  const int y = std::min(a.y, b.y);
  return {x, y, std::max(a.x + a.width, b.x + b.width) - x,
          std::max(a.y + a.height, b.y + b.height) - y};
}

int stepBelow(int value) { return value - (value % DrawnArea::step); }
int stepAbove(int value) { return stepBelow(value + DrawnArea::step - 1); }

PixelRect widened(const PixelRect& needed, const PixelRect& screen) {
  const int x = stepBelow(needed.x);
  const int y = stepBelow(needed.y);
  return intersectionOf(
      {x, y, stepAbove(needed.x + needed.width) - x, stepAbove(needed.y + needed.height) - y},
      screen);
}

}  // namespace

bool DrawnArea::update(const PixelRect& needed, const PixelRect& screen, Date now) {
  const auto wanted = widened(needed, screen);
  const auto grown = intersectionOf(unionOf(area_, wanted), screen);
  if (grown != area_) {
    area_ = grown;
    recentlyNeeded_ = {};
    tooLargeSince_ = now;
    return true;
  }
  recentlyNeeded_ = unionOf(recentlyNeeded_, wanted);
  if (recentlyNeeded_ == area_ || now < tooLargeSince_) {
    recentlyNeeded_ = wanted == area_ ? PixelRect{} : wanted;
    tooLargeSince_ = now;
    return false;
  }
  if (now - tooLargeSince_ < patience) return false;
  area_ = recentlyNeeded_;
  recentlyNeeded_ = {};
  tooLargeSince_ = now;
  return true;
}

}  // namespace orvane::host::x11
