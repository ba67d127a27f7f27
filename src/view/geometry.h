// view/ turns a description of a screen, made of plain values, into a flat list of things to draw.
// It is standard C++ only; measuring text and painting are ports. All lengths are points, with the
// origin at the top left; scale and pixels are the painter's business.
#pragma once

#include <algorithm>

namespace orvane {

struct Point {
  double x = 0;
  double y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
  double width = 0;
  double height = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  [[nodiscard]] constexpr double right() const { return x + width; }
  [[nodiscard]] constexpr double bottom() const { return y + height; }
  [[nodiscard]] constexpr bool isEmpty() const { return width <= 0 || height <= 0; }
  [[nodiscard]] constexpr Size size() const { return {width, height}; }
  [[nodiscard]] constexpr Point origin() const { return {x, y}; }
  // Smaller by `amount` on every side; larger, when it is negative.
  [[nodiscard]] constexpr Rect insetBy(double amount) const {
    return {x + amount, y + amount, width - 2 * amount, height - 2 * amount};
  }
  [[nodiscard]] constexpr Rect movedBy(double dx, double dy) const {
    return {x + dx, y + dy, width, height};
  }
  [[nodiscard]] constexpr bool intersects(const Rect& other) const {
    return !isEmpty() && !other.isEmpty() && x < other.right() && other.x < right() &&
           y < other.bottom() && other.y < bottom();
  }
  [[nodiscard]] constexpr bool contains(const Rect& other) const {
    return x <= other.x && y <= other.y && right() >= other.right() && bottom() >= other.bottom();
  }
  friend bool operator==(const Rect&, const Rect&) = default;
};

// The smallest rectangle that holds both; an empty one counts as nothing.
constexpr Rect unionOf(const Rect& a, const Rect& b) {
  if (a.isEmpty()) return b;
  if (b.isEmpty()) return a;
  const double x = std::min(a.x, b.x);
  const double y = std::min(a.y, b.y);
  return {x, y, std::max(a.right(), b.right()) - x, std::max(a.bottom(), b.bottom()) - y};
}

// What both hold; empty where they do not meet.
constexpr Rect intersectionOf(const Rect& a, const Rect& b) {
  const double x = std::max(a.x, b.x);
  const double y = std::max(a.y, b.y);
  const double right = std::min(a.right(), b.right());
  const double bottom = std::min(a.bottom(), b.bottom());
  if (right <= x || bottom <= y) return {};
  return {x, y, right - x, bottom - y};
}

struct EdgeInsets {
  double top = 0;
  double leading = 0;
  double bottom = 0;
  double trailing = 0;
  friend bool operator==(const EdgeInsets&, const EdgeInsets&) = default;
};

}  // namespace orvane
