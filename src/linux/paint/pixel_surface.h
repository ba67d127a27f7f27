#pragma once

#include "linux/paint/handles.h"
#include "view/painter.h"

namespace orvane::host {

// A surface that draws into the buffer, which must outlive it.
[[nodiscard]] inline SurfaceHandle surfaceOver(const PixelBuffer& buffer) {
  return SurfaceHandle(cairo_image_surface_create_for_data(
      buffer.data, CAIRO_FORMAT_ARGB32, buffer.width, buffer.height, buffer.stride));
}

}  // namespace orvane::host
