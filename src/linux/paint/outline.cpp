#include "linux/paint/outline.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orvane::host {

namespace {

Outline circleIn(const Rect& frame, double scale) {
  const int side = toPixels(std::min(frame.width, frame.height), scale);
  const double centerX = (frame.x + frame.width / 2) * scale;
  const double centerY = (frame.y + frame.height / 2) * scale;
  return {std::floor(centerX - side / 2.0 + 0.5),
          std::floor(centerY - side / 2.0 + 0.5),
          static_cast<double>(side),
          static_cast<double>(side),
          side / 2.0,
          false};
}

// A corner in the quadrant that `toX` and `toY` point into from the corner's own point, with
// ends `reachX` and `reachY` away from it. Two curves meet on the diagonal where the circle of
// the same radius crosses it, with that circle's tangent and curvature. Towards the edges the
// curvature falls to zero, for both control points next to an end lie on the edge.
struct ContinuousCorner {
  double x, y, toX, toY, radius, reachX, reachY;

  [[nodiscard]] Point at(double alongX, double alongY) const {
    return {x + toX * alongX, y + toY * alongY};
  }
};

constexpr double apex = 1 - std::numbers::sqrt2 / 2;  // of the circle, from the corner, per radius
// From the condition that the curvature at the apex is 1 / radius.
constexpr double middleControl = 2 * apex + 3 * apex * apex * std::numbers::sqrt2;
constexpr double continuousReach = 1.36;

void curveTo(cairo_t* cr, Point control1, Point control2, Point end) {
  cairo_curve_to(cr, control1.x, control1.y, control2.x, control2.y, end.x, end.y);
}

// From the vertical edge to the horizontal one, or back.
enum class Turn { fromVertical, fromHorizontal };

void addCorner(cairo_t* cr, const ContinuousCorner& c, Turn turn) {
  const double m = apex * c.radius;
  const double nearX = std::min(middleControl * c.radius, c.reachX);
  const double nearY = std::min(middleControl * c.radius, c.reachY);
  const Point vertical[] = {c.at(0, c.reachY), c.at(0, nearY), c.at(0, 2 * m)};
  const Point horizontal[] = {c.at(c.reachX, 0), c.at(nearX, 0), c.at(2 * m, 0)};
  const Point* from = turn == Turn::fromVertical ? vertical : horizontal;
  const Point* to = turn == Turn::fromVertical ? horizontal : vertical;
  cairo_line_to(cr, from[0].x, from[0].y);
  curveTo(cr, from[1], from[2], c.at(m, m));
  curveTo(cr, to[2], to[1], to[0]);
}

void addContinuousPath(cairo_t* cr, const Outline& o) {
  const double reach = cornerReach(o.radius, true);
  const double reachX = std::min(reach, o.width / 2);
  const double reachY = std::min(reach, o.height / 2);
  const double right = o.x + o.width;
  const double bottom = o.y + o.height;
  cairo_new_sub_path(cr);
  addCorner(cr, {o.x, o.y, 1, 1, o.radius, reachX, reachY}, Turn::fromVertical);
  addCorner(cr, {right, o.y, -1, 1, o.radius, reachX, reachY}, Turn::fromHorizontal);
  addCorner(cr, {right, bottom, -1, -1, o.radius, reachX, reachY}, Turn::fromVertical);
  addCorner(cr, {o.x, bottom, 1, -1, o.radius, reachX, reachY}, Turn::fromHorizontal);
  cairo_close_path(cr);
}

void addRoundPath(cairo_t* cr, const Outline& o) {
  constexpr double quarter = std::numbers::pi / 2;
  const double left = o.x + o.radius;
  const double right = o.x + o.width - o.radius;
  const double top = o.y + o.radius;
  const double bottom = o.y + o.height - o.radius;
  cairo_new_sub_path(cr);
  cairo_arc(cr, left, top, o.radius, 2 * quarter, 3 * quarter);
  cairo_arc(cr, right, top, o.radius, 3 * quarter, 4 * quarter);
  cairo_arc(cr, right, bottom, o.radius, 0, quarter);
  cairo_arc(cr, left, bottom, o.radius, quarter, 2 * quarter);
  cairo_close_path(cr);
}

}  // namespace

Outline outlineOf(const Shape& shape, const Rect& frame, double scale) {
  if (shape.kind == Shape::Kind::circle) return circleIn(frame, scale);
  const PixelRect rect = snapped(frame, scale);
  const double width = rect.width;
  const double height = rect.height;
  return {static_cast<double>(rect.x),
          static_cast<double>(rect.y),
          width,
          height,
          cornerRadiusIn(shape, {width, height}, scale),
          shape.continuous};
}

Outline insetBy(const Outline& outline, double amount) {
  return {outline.x + amount,
          outline.y + amount,
          outline.width - 2 * amount,
          outline.height - 2 * amount,
          std::max(outline.radius - amount, 0.0),
          outline.continuous};
}

bool isEmpty(const Outline& outline) { return !(outline.width > 0 && outline.height > 0); }

PixelRect coveringPixels(const Outline& outline) {
  if (isEmpty(outline)) return {};
  return pixelsCovering({outline.x, outline.y, outline.width, outline.height}, 1);
}

PixelRect interiorOf(const Outline& outline) {
  if (isEmpty(outline)) return {};
  // The square whose corners touch the rounded ones, and a pixel for the outline's own fraction.
  const double inset = outline.radius > 0 ? outline.radius * apex + 1 : 0;
  const Outline inner = insetBy(outline, inset);
  const int x = static_cast<int>(std::ceil(inner.x));
  const int y = static_cast<int>(std::ceil(inner.y));
  return {x, y, static_cast<int>(std::floor(inner.x + inner.width)) - x,
          static_cast<int>(std::floor(inner.y + inner.height)) - y};
}

void addPath(cairo_t* cr, const Outline& outline) {
  if (isEmpty(outline)) return;
  if (outline.radius <= 0)
    cairo_rectangle(cr, outline.x, outline.y, outline.width, outline.height);
  else if (outline.continuous)
    addContinuousPath(cr, outline);
  else
    addRoundPath(cr, outline);
}

double cornerReach(double radius, bool continuous) {
  return continuous ? radius * continuousReach : radius;
}

}  // namespace orvane::host
