#pragma once

#include <functional>
#include <vector>

#include "linux/wayland/missing_pixels.h"
#include "linux/wayland/surface_area.h"
#include "linux/wayland/swap_buffers.h"
#include "view/display_list.h"
#include "view/painter.h"

namespace orvane::host::wayland {

// What a surface shows of its window: the buffers that hold it, and what of it has changed since
// the compositor was given the last one.
class LayerPicture {
 public:
  // The painter outlives it. `released`: a buffer has become free again.
  LayerPicture(wl_shm* shm, Painter& painter, std::function<void()> released)
      : painter_(painter), buffers_(shm, std::move(released)) {}

  // It shows this part of the window from now on; where that is another one than before, all of it
  // has changed.
  void moveTo(const SurfaceArea& area, SurfaceScale scale);
  [[nodiscard]] SurfaceScale scale() const { return scale_; }
  // What is drawn in these rectangles of the window has changed. In points.
  void change(const std::vector<Rect>& rects);
  // What of it has changed, in pixels from its corner.
  [[nodiscard]] const std::vector<PixelRect>& changed() const { return changed_.rects(); }

  // A buffer with the picture, for the compositor, after which nothing has changed. It stays the
  // picture's own and is there until the picture moves or is cleared. Null while the compositor
  // holds all buffers or there is no memory for one.
  [[nodiscard]] ShmBuffer* paint(const DisplayList& list);
  [[nodiscard]] bool isOutOfMemory() const { return buffers_.isOutOfMemory(); }
  // No picture and no place, as at the beginning.
  void clear();

 private:
  void paintInto(ShmBuffer& buffer, const DisplayList& list);

  Painter& painter_;
  PixelRect part_;  // of the window
  SurfaceScale scale_;
  MissingPixels changed_;
  SwapBuffers buffers_;
};

}  // namespace orvane::host::wayland
