#pragma once

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <vector>

#include "view/geometry.h"

namespace orvane {

struct PixelPoint {
  int x = 0;
  int y = 0;
  friend bool operator==(const PixelPoint&, const PixelPoint&) = default;
};

struct PixelRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  [[nodiscard]] constexpr bool isEmpty() const { return width <= 0 || height <= 0; }
  friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

// A rectangle of whole pixels or whole points.
template <class R>
concept WholeRect = std::same_as<decltype(R::x), int> && std::same_as<decltype(R::y), int> &&
    std::same_as<decltype(R::width), int> && std::same_as<decltype(R::height), int>;

// Where it ends. Wide, since a rectangle whose edges were clamped to the range of int may end
// beyond it once it was moved.
template <WholeRect R>
constexpr std::int64_t rightOf(const R& rect) {
  return std::int64_t{rect.x} + rect.width;
}
template <WholeRect R>
constexpr std::int64_t bottomOf(const R& rect) {
  return std::int64_t{rect.y} + rect.height;
}

// The smallest rectangle that holds both; an empty one counts as nothing.
template <WholeRect R>
constexpr R unionOf(const R& a, const R& b) {
  if (a.isEmpty()) return b;
  if (b.isEmpty()) return a;
  const int x = std::min(a.x, b.x);
  const int y = std::min(a.y, b.y);
  return {x, y, static_cast<int>(std::max(rightOf(a), rightOf(b)) - x),
          static_cast<int>(std::max(bottomOf(a), bottomOf(b)) - y)};
}

// What both hold; empty where they do not meet.
template <WholeRect R>
constexpr R intersectionOf(const R& a, const R& b) {
  const int x = std::max(a.x, b.x);
  const int y = std::max(a.y, b.y);
  const auto right = std::min(rightOf(a), rightOf(b));
  const auto bottom = std::min(bottomOf(a), bottomOf(b));
  if (right <= x || bottom <= y) return {};
  return {x, y, static_cast<int>(right - x), static_cast<int>(bottom - y)};
}

// How many pixels several rectangles have together; what lies in two of them counts twice.
std::int64_t areaOf(const std::vector<PixelRect>& rects);

// Every pixel that `points` touches at `scale` pixels per point. Values beyond the range of int
// are clamped to it.
PixelRect pixelsCovering(const Rect& points, double scale);

// The edge of a rectangle rounded to the nearest pixel from its absolute position, so that
// neighbours that share an edge in points share it in pixels.
Rect snappedToPixels(const Rect& points, double scale);  // in points

}  // namespace orvane
