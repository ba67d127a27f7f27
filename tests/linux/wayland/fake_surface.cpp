#include "linux/wayland/fake_surface.h"

#include <fractional-scale-v1-server.h>

#include <cstring>
#include <utility>

#include "linux/wayland/fake_compositor.h"

namespace orvane::fakes {

void FakeSurface::configure(std::uint32_t toWidth, std::uint32_t toHeight) {
  configured_ = true;
  configuredWidth_ = toWidth;
  configuredHeight_ = toHeight;
  zwlr_layer_surface_v1_send_configure(layerSurface_, compositor_.nextSerial(), toWidth, toHeight);
}

void FakeSurface::close() { zwlr_layer_surface_v1_send_closed(layerSurface_); }

void FakeSurface::preferScale(std::uint32_t per120) {
  wp_fractional_scale_v1_send_preferred_scale(fractionalScale_, per120);
}

void FakeSurface::showFrame() {
  for (wl_resource* frame : std::exchange(frames_, {})) {
    wl_callback_send_done(frame, 0);
    wl_resource_destroy(frame);
  }
}

void FakeSurface::releaseBuffers() {
  for (wl_resource* buffer : std::exchange(held_, {})) wl_buffer_send_release(buffer);
}

void FakeSurface::commit() {
  ++commits;
  frames_.insert(frames_.end(), pending_.frames.begin(), pending_.frames.end());
  pending_.frames.clear();
  const auto buffer = std::exchange(pending_.buffer, std::nullopt);
  if (buffer && *buffer) {
    if (!acknowledged_) compositor_.complain("a picture came before the size was agreed on");
    takePicture(*buffer);
  }
  pending_.changed.clear();
  if (auto parts = std::exchange(pending_.blurred, std::nullopt)) blurred = std::move(*parts);
  const bool resized = width != configuredWidth_ || height != configuredHeight_;
  if (layerSurface_ && compositor_.configuresAtOnce && (!configured_ || resized)) {
    configure(width, height);
  }
}

void FakeSurface::takePicture(wl_resource* resource) {
  wl_shm_buffer* buffer = wl_shm_buffer_get(resource);
  Picture picture = state_;
  picture.width = wl_shm_buffer_get_width(buffer);
  picture.height = wl_shm_buffer_get_height(buffer);
  picture.changed = pending_.changed;
  picture.pixels.resize(static_cast<std::size_t>(picture.width) * picture.height);
  wl_shm_buffer_begin_access(buffer);
  std::memcpy(picture.pixels.data(), wl_shm_buffer_get_data(buffer), picture.pixels.size() * 4);
  wl_shm_buffer_end_access(buffer);
  pictures.push_back(std::move(picture));
  held_.push_back(resource);
  if (compositor_.releasesAtOnce) releaseBuffers();
  if (compositor_.showsAtOnce) showFrame();
}

}  // namespace orvane::fakes
