#pragma once

#include <functional>
#include <memory>

#include "linux/wayland/handles.h"
#include "linux/wayland/missing_pixels.h"
#include "view/painter.h"

namespace orvane::host::wayland {

struct PixelSize {
  int width = 0;
  int height = 0;
  friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

// A picture in memory that is shared with the compositor, clear at first. Between present and
// release it is the compositor's to read and must not be drawn into.
class ShmBuffer {
 public:
  // Nothing where the memory cannot be had.
  [[nodiscard]] static std::unique_ptr<ShmBuffer> make(wl_shm* shm, PixelSize size,
                                                       std::function<void(ShmBuffer&)> released);
  ~ShmBuffer();
  ShmBuffer(const ShmBuffer&) = delete;
  ShmBuffer& operator=(const ShmBuffer&) = delete;

  [[nodiscard]] wl_buffer* handle() const { return buffer_.get(); }
  [[nodiscard]] PixelBuffer pixels() const { return pixels_; }
  [[nodiscard]] bool isBusy() const { return busy_; }
  void giveToCompositor() { busy_ = true; }
  // To be called when much of the picture was drawn: its pages stay with the file that the
  // compositor sees, but are no longer held by this process until it draws on them again.
  void letPagesGo() const;

  // What was shown since this buffer was last drawn into; all of it, while it is new.
  MissingPixels missing;

 private:
  ShmBuffer(Handle<wl_buffer> buffer, PixelBuffer pixels, std::function<void(ShmBuffer&)> released);

  Handle<wl_buffer> buffer_;
  PixelBuffer pixels_;
  std::function<void(ShmBuffer&)> released_;
  bool busy_ = false;
};

}  // namespace orvane::host::wayland
