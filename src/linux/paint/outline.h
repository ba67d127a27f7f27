#pragma once

#include "linux/paint/handles.h"
#include "linux/paint/pixel_geometry.h"
#include "view/shape.h"

namespace orvane::host {

// A shape in its place, in pixels of the plane: a corner and a size in whole ones. All our shapes
// are rounded rectangles; a plain one has radius zero, and capsules and circles are as round as
// they can be.
struct Outline {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  double radius = 0;
  bool continuous = false;
};

// The shape in its frame, with its edges on whole pixels. A circle keeps its diameter wherever it
// stands, so that equal circles look alike.
[[nodiscard]] Outline outlineOf(const Shape& shape, const Rect& frame, double scale);
[[nodiscard]] Outline insetBy(const Outline& outline, double amount);
[[nodiscard]] bool isEmpty(const Outline& outline);

// Pixels that lie wholly inside.
[[nodiscard]] PixelRect interiorOf(const Outline& outline);

// Pixels that it touches.
[[nodiscard]] PixelRect coveringPixels(const Outline& outline);

void addPath(cairo_t* cr, const Outline& outline);

// How far along an edge a corner of this radius reaches, where there is room.
[[nodiscard]] double cornerReach(double radius, bool continuous);

}  // namespace orvane::host
