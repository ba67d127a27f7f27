#include "view/glass.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace orvane {
namespace {

// A group's clip; of groups within others, the part that all of them let through.
struct Clip {
  Rect frame;
  Shape shape;
};

std::optional<Clip> clipWithin(const std::optional<Clip>& outer, const DisplayItem& item) {
  const auto& group = std::get<GroupBegin>(item.content);
  if (!group.clip) return outer;
  if (!outer) return Clip{item.frame, *group.clip};
  return Clip{intersectionOf(outer->frame, item.frame), *group.clip};
}

// What a clip lets through of a pane has the shape of the one that is the smaller.
GlassPane paneWithin(const std::optional<Clip>& clip, const DisplayItem& item) {
  const Shape own = std::get<FillItem>(item.content).shape;
  if (!clip) return {item.frame, own};
  const bool clipDecides = item.frame.contains(clip->frame);
  return {intersectionOf(clip->frame, item.frame), clipDecides ? clip->shape : own};
}

bool isGlass(const DisplayItem& item) {
  const auto* fill = std::get_if<FillItem>(&item.content);
  return fill && std::holds_alternative<Material>(fill->fill) && !item.bounds().isEmpty();
}

// How far a corner's arc keeps from the side, at this distance from the edge that it begins at.
double insetAt(double fromEdge, double radius) {
  if (fromEdge >= radius) return 0;
  const double up = radius - std::max(fromEdge, 0.0);
  return radius - std::sqrt(radius * radius - up * up);
}

// A circle stands in the middle of its frame.
Rect outlineOf(const GlassPane& pane) {
  if (pane.shape.kind != Shape::Kind::circle) return pane.frame;
  const double side = std::min(pane.frame.width, pane.frame.height);
  return {pane.frame.x + (pane.frame.width - side) / 2,
          pane.frame.y + (pane.frame.height - side) / 2, side, side};
}

// No screen reaches farther than this.
constexpr double farthest = 100'000;

int wholeUp(double value) {
  return static_cast<int>(std::ceil(std::clamp(value, -farthest, farthest)));
}

int wholeDown(double value) {
  return static_cast<int>(std::floor(std::clamp(value, -farthest, farthest)));
}

// Rows of the same extent are one rectangle.
void addRow(std::vector<PixelRect>& rows, int y, int from, int to) {
  if (from >= to) return;
  const bool goesOn = !rows.empty() && rows.back().x == from && rows.back().width == to - from &&
                      rows.back().y + rows.back().height == y;
  if (goesOn) {
    ++rows.back().height;
  } else {
    rows.push_back({from, y, to - from, 1});
  }
}

}  // namespace

std::vector<GlassPane> glassPanes(const DisplayList& list) {
  std::vector<GlassPane> panes;
  std::vector<std::optional<Clip>> clips = {std::nullopt};
  for (const DisplayItem& item : list) {
    if (std::holds_alternative<GroupBegin>(item.content)) {
      clips.push_back(clipWithin(clips.back(), item));
    } else if (std::holds_alternative<GroupEnd>(item.content)) {
      if (clips.size() > 1) clips.pop_back();
    } else if (isGlass(item)) {
      const GlassPane pane = paneWithin(clips.back(), item);
      if (!pane.frame.isEmpty()) panes.push_back(pane);
    }
  }
  return panes;
}

std::vector<PixelRect> pixelsWithin(const GlassPane& pane, double scale) {
  const Rect points = outlineOf(pane);
  const Rect outline{points.x * scale, points.y * scale, points.width * scale,
                     points.height * scale};
  const double radius = cornerRadiusIn(pane.shape, outline.size(), scale);
  std::vector<PixelRect> rows;
  for (int y = wholeUp(outline.y); y < wholeDown(outline.bottom()); ++y) {
    const double inset = insetAt(std::min(y - outline.y, outline.bottom() - y - 1), radius);
    addRow(rows, y, wholeUp(outline.x + inset), wholeDown(outline.right() - inset));
  }
  return rows;
}

}  // namespace orvane
