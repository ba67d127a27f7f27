#include "linux/wayland/shm_buffer.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <limits>

#include "linux/files/file_descriptor.h"

namespace orvane::host::wayland {
namespace {

std::size_t bytesOf(const PixelBuffer& pixels) {
  return static_cast<std::size_t>(pixels.stride) * static_cast<std::size_t>(pixels.height);
}

// Memory whose size nobody can change any more: the compositor need not fear that it shrinks under
// its hands. The blocks are taken now, since running out of them later would kill whoever writes.
bool prepare(int fd, std::int64_t bytes) {
  return fd >= 0 && posix_fallocate(fd, 0, bytes) == 0 &&
         fcntl(fd, F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) == 0;
}

}  // namespace

std::unique_ptr<ShmBuffer> ShmBuffer::make(wl_shm* shm, PixelSize size,
                                           std::function<void(ShmBuffer&)> released) {
  const std::int64_t bytes = std::int64_t{4} * size.width * size.height;
  if (bytes <= 0 || bytes > std::numeric_limits<std::int32_t>::max()) return nullptr;
  const FileDescriptor fd(memfd_create("orvane-surface", MFD_CLOEXEC | MFD_ALLOW_SEALING));
  if (!prepare(fd.get(), bytes)) return nullptr;
  void* memory = mmap(nullptr, static_cast<std::size_t>(bytes), PROT_READ | PROT_WRITE, MAP_SHARED,
                      fd.get(), 0);
  if (memory == MAP_FAILED) return nullptr;
  const PixelBuffer pixels{static_cast<std::uint8_t*>(memory), size.width, size.height,
                           4 * size.width};
  const Handle<wl_shm_pool> pool(
      wl_shm_create_pool(shm, fd.get(), static_cast<std::int32_t>(bytes)));
  Handle<wl_buffer> buffer(wl_shm_pool_create_buffer(pool.get(), 0, size.width, size.height,
                                                     pixels.stride, WL_SHM_FORMAT_ARGB8888));
  return std::unique_ptr<ShmBuffer>(new ShmBuffer(std::move(buffer), pixels, std::move(released)));
}

ShmBuffer::ShmBuffer(Handle<wl_buffer> buffer, PixelBuffer pixels,
                     std::function<void(ShmBuffer&)> released)
    : buffer_(std::move(buffer)), pixels_(pixels), released_(std::move(released)) {
  static const wl_buffer_listener listener = {[](void* it, wl_buffer*) {
    auto& self = *static_cast<ShmBuffer*>(it);
    self.busy_ = false;
    // A copy: whoever is told may destroy this buffer.
    const auto tell = self.released_;
    tell(self);
  }};
  wl_buffer_add_listener(buffer_.get(), &listener, this);
  missing.add(PixelRect{0, 0, pixels_.width, pixels_.height});
}

void ShmBuffer::letPagesGo() const { madvise(pixels_.data, bytesOf(pixels_), MADV_DONTNEED); }

ShmBuffer::~ShmBuffer() { munmap(pixels_.data, bytesOf(pixels_)); }

}  // namespace orvane::host::wayland
