#include "linux/wayland/swap_buffers.h"

#include <algorithm>
#include <utility>

namespace orvane::host::wayland {
namespace {
constexpr std::size_t mostBuffers = 2;
// Not the compositor's last word on what is shown: it has been given others since.
constexpr std::size_t mostRetired = 2 * mostBuffers;
}  // namespace

void SwapBuffers::resize(PixelSize size) {
  if (size == size_) return;
  size_ = size;
  for (auto& buffer : std::exchange(buffers_, {})) {
    if (buffer->isBusy()) retired_.push_back(std::move(buffer));
  }
  if (retired_.size() > mostRetired) retired_.erase(retired_.begin(), retired_.end() - mostRetired);
}

void SwapBuffers::clear() {
  size_ = {};
  buffers_.clear();
  retired_.clear();
}

ShmBuffer* SwapBuffers::acquire() {
  outOfMemory_ = false;
  auto it = std::find_if(buffers_.begin(), buffers_.end(),
                         [](const auto& buffer) { return !buffer->isBusy(); });
  if (it == buffers_.end() && buffers_.size() < mostBuffers) {
    auto made = ShmBuffer::make(shm_, size_, [this](ShmBuffer& buffer) { onRelease(buffer); });
    outOfMemory_ = made == nullptr;
    if (made) it = buffers_.insert(buffers_.end(), std::move(made));
  }
  if (it == buffers_.end()) return nullptr;
  std::rotate(buffers_.begin(), it, it + 1);
  return buffers_.front().get();
}

void SwapBuffers::markChanged(const std::vector<PixelRect>& changed) {
  for (const auto& buffer : buffers_) buffer->missing.add(changed);
}

void SwapBuffers::onRelease(ShmBuffer& buffer) {
  std::erase_if(retired_, [&](const auto& retired) { return retired.get() == &buffer; });
  released_();
}

}  // namespace orvane::host::wayland
