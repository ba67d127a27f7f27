#pragma once

#include <vector>

#include "view/symbols.h"

namespace orvane {

// Builds paths from the figures that our drawings are made of. Angles are in degrees, clockwise
// from three o'clock, as the y axis points down.
class PathBuilder {
 public:
  PathBuilder& move(Point to);
  PathBuilder& line(Point to);
  PathBuilder& curve(Point control1, Point control2, Point to);
  PathBuilder& close();
  // A circular arc, which begins with a line from where the path stands, if it stands anywhere.
  PathBuilder& arc(Point center, double radius, double fromAngle, double toAngle);
  [[nodiscard]] Path build() const { return path_; }

 private:
  Path path_;
};

[[nodiscard]] Point pointOnCircle(Point center, double radius, double angle);
[[nodiscard]] Path circlePath(Point center, double radius);
[[nodiscard]] Path roundedRectPath(const Rect& rect, double radius);
[[nodiscard]] Path polyline(const std::vector<Point>& points);

}  // namespace orvane
