#pragma once

#include "view/geometry.h"
#include "view/view.h"

namespace orvane::detail {

// How far a length inside another begins after it; negative where it is longer and sticks out.
constexpr double offsetOf(HorizontalAlignment alignment, double inner, double outer) {
  switch (alignment) {
    case HorizontalAlignment::leading:
      return 0;
    case HorizontalAlignment::center:
      return (outer - inner) / 2;
    case HorizontalAlignment::trailing:
      return outer - inner;
  }
  return 0;
}

// Baselines have a meaning only between the children of a stack; elsewhere they mean the top.
constexpr double offsetOf(VerticalAlignment alignment, double inner, double outer) {
  switch (alignment) {
    case VerticalAlignment::top:
    case VerticalAlignment::firstTextBaseline:
      return 0;
    case VerticalAlignment::center:
      return (outer - inner) / 2;
    case VerticalAlignment::bottom:
      return outer - inner;
  }
  return 0;
}

constexpr Rect aligned(Alignment alignment, Size inner, const Rect& outer) {
  return {outer.x + offsetOf(alignment.horizontal, inner.width, outer.width),
          outer.y + offsetOf(alignment.vertical, inner.height, outer.height), inner.width,
          inner.height};
}

}  // namespace orvane::detail
