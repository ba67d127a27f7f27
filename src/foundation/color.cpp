#include "foundation/color.h"

namespace orvane {
namespace {

SRGB paletteEntry(SystemColor name) {
  switch (name) {
    case SystemColor::red:
      return {1.0, 0.38, 0.34, 1};
    case SystemColor::orange:
      return {1.0, 0.624, 0.039, 1};
    case SystemColor::yellow:
      return {1.0, 0.839, 0.039, 1};
    case SystemColor::cyan:
      return {0.353, 0.784, 0.961, 1};
    case SystemColor::white:
      return {1, 1, 1, 1};
    case SystemColor::black:
      return {0, 0, 0, 1};
  }
  return {};
}

}  // namespace

SRGB Color::resolved() const {
  if (!isSystem_) return components_;
  SRGB result = paletteEntry(name_);
  result.opacity = components_.opacity;
  return result;
}

}  // namespace orvane
