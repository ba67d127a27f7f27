#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "linux/wayland/shm_buffer.h"

namespace orvane::host::wayland {

// The at most two buffers of a surface. The second is made only when the compositor still reads
// the first; compositors that copy at once let us keep to one.
class SwapBuffers {
 public:
  // `released` is called when a buffer has become free again.
  SwapBuffers(wl_shm* shm, std::function<void()> released)
      : shm_(shm), released_(std::move(released)) {}

  // Buffers of another size from now on. Those that the compositor reads live until it is done, or
  // until later ones have taken their place a few times.
  void resize(PixelSize size);
  // None from now on: with the surface gone nobody is to see them, released or not.
  void clear();
  [[nodiscard]] PixelSize size() const { return size_; }

  // One that may be drawn into, the fewest pixels missing; null while the compositor holds both or
  // when there is no memory.
  [[nodiscard]] ShmBuffer* acquire();
  // Every buffer misses what changes in the picture.
  void markChanged(const std::vector<PixelRect>& changed);
  // Whether acquire() failed for want of memory, not of patience.
  [[nodiscard]] bool isOutOfMemory() const { return outOfMemory_; }

 private:
  void onRelease(ShmBuffer& buffer);

  wl_shm* shm_;
  std::function<void()> released_;
  PixelSize size_;
  bool outOfMemory_ = false;
  std::vector<std::unique_ptr<ShmBuffer>> buffers_;  // the latest drawn first
  std::vector<std::unique_ptr<ShmBuffer>> retired_;  // the longest first
};

}  // namespace orvane::host::wayland
