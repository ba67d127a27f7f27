#include "view/path_builder.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orvane {

namespace {

constexpr double radiansPerDegree = std::numbers::pi / 180;

}  // namespace

PathBuilder& PathBuilder::move(Point to) {
  path_.push_back({PathCommand::Verb::move, {to}});
  return *this;
}

PathBuilder& PathBuilder::line(Point to) {
  path_.push_back({PathCommand::Verb::line, {to}});
  return *this;
}

PathBuilder& PathBuilder::curve(Point control1, Point control2, Point to) {
  path_.push_back({PathCommand::Verb::curve, {control1, control2, to}});
  return *this;
}

PathBuilder& PathBuilder::close() {
  path_.push_back({PathCommand::Verb::close, {}});
  return *this;
}

PathBuilder& PathBuilder::arc(Point center, double radius, double fromAngle, double toAngle) {
  const Point start = pointOnCircle(center, radius, fromAngle);
  path_.empty() ? move(start) : line(start);
  // A cubic curve is true to a circle to well under a thousandth for a quarter of it at most.
  const int pieces = std::max(1, static_cast<int>(std::ceil(std::abs(toAngle - fromAngle) / 90)));
  const double step = (toAngle - fromAngle) / pieces;
  const double handle = radius * 4 / 3 * std::tan(step * radiansPerDegree / 4);
  for (int piece = 0; piece < pieces; ++piece) {
    const double a = fromAngle + step * piece;
    const double b = a + step;
    const Point p = pointOnCircle(center, radius, a);
    const Point q = pointOnCircle(center, radius, b);
    const Point tangentP = pointOnCircle({}, handle, a + 90);
    const Point tangentQ = pointOnCircle({}, handle, b + 90);
    curve({p.x + tangentP.x, p.y + tangentP.y}, {q.x - tangentQ.x, q.y - tangentQ.y}, q);
  }
  return *this;
}

Point pointOnCircle(Point center, double radius, double angle) {
  const double radians = angle * radiansPerDegree;
  return {center.x + radius * std::cos(radians), center.y + radius * std::sin(radians)};
}

Path circlePath(Point center, double radius) {
  return PathBuilder().arc(center, radius, 0, 360).close().build();
}

Path roundedRectPath(const Rect& rect, double radius) {
  const double left = rect.x + radius;
  const double right = rect.right() - radius;
  const double top = rect.y + radius;
  const double bottom = rect.bottom() - radius;
  return PathBuilder()
      .arc({left, top}, radius, 180, 270)
      .arc({right, top}, radius, 270, 360)
      .arc({right, bottom}, radius, 0, 90)
      .arc({left, bottom}, radius, 90, 180)
      .close()
      .build();
}

Path polyline(const std::vector<Point>& points) {
  PathBuilder builder;
  for (const Point& point : points)
    &point == &points.front() ? builder.move(point) : builder.line(point);
  return builder.build();
}

}  // namespace orvane
