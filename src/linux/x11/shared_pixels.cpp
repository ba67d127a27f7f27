#include "linux/x11/shared_pixels.h"

#include <sys/mman.h>
#include <sys/shm.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

#include "linux/files/file_descriptor.h"
#include "linux/xcb/answers.h"

namespace orvane::host::x11 {

namespace {

// 12 of the 16 kB of xcb's queue, and less than a socket that takes requests has room for.
constexpr int bandPixels = 3 * 1024;

std::size_t sizeOf(const PixelBuffer& buffer) {
  return static_cast<std::size_t>(buffer.stride) * static_cast<std::size_t>(buffer.height);
}

bool succeeded(const Connection& connection, xcb_void_cookie_t asked) {
  return xcb::wasServed(connection.handle(), asked);
}

bool isLittleEndian() {
  const std::uint16_t one = 1;
  std::uint8_t first = 0;
  std::memcpy(&first, &one, 1);
  return first == 1;
}

// Pixels go through the connection in the server's byte order.
void swapBytes(std::vector<std::uint8_t>& pixels) {
  for (std::size_t i = 0; i + 3 < pixels.size(); i += 4) {
    std::swap(pixels[i], pixels[i + 3]);
    std::swap(pixels[i + 1], pixels[i + 2]);
  }
}

}  // namespace

SharedPixels::SharedPixels(Connection& connection, int width, int height)
    : connection_(connection), buffer_{nullptr, width, height, width * 4} {
  if (attach()) return;
  own_.resize(sizeOf(buffer_));
  buffer_.data = own_.data();
}

SharedPixels::~SharedPixels() {
  // The server has its own mapping until it has served what was asked before.
  if (segment_ != 0) xcb_shm_detach(connection_.handle(), segment_);
  if (mapped_ != nullptr) munmap(mapped_, sizeOf(buffer_));
  if (attached_ != nullptr) shmdt(attached_);
}

void SharedPixels::letPagesGo() const {
  if (mapped_ != nullptr) madvise(mapped_, sizeOf(buffer_), MADV_DONTNEED);
}

bool SharedPixels::attach() {
  const auto size = sizeOf(buffer_);
  const auto kind = connection_.sharedMemory();
  if (size == 0 || kind == SharedMemory::none || connection_.isLost()) return false;
  return (kind == SharedMemory::fileDescriptors && attachDescriptor(size)) || attachSegment(size);
}

bool SharedPixels::attachDescriptor(std::size_t size) {
  FileDescriptor file(memfd_create("orvane-pixels", MFD_CLOEXEC));
  if (file.get() < 0 || ftruncate(file.get(), static_cast<off_t>(size)) != 0) return false;
  void* memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
  if (memory == MAP_FAILED) return false;
  const auto segment = xcb_generate_id(connection_.handle());
  // xcb closes the descriptor once it is sent.
  const auto asked = xcb_shm_attach_fd_checked(connection_.handle(), segment, file.release(), 0);
  if (!succeeded(connection_, asked)) {
    munmap(memory, size);
    return false;
  }
  segment_ = segment;
  mapped_ = memory;
  buffer_.data = static_cast<std::uint8_t*>(memory);
  return true;
}

bool SharedPixels::attachSegment(std::size_t size) {
  const int id = shmget(IPC_PRIVATE, size, IPC_CREAT | 0600);
  if (id < 0) return false;
  void* memory = shmat(id, nullptr, 0);
  const bool isMapped = reinterpret_cast<std::intptr_t>(memory) != -1;
  const auto segment = isMapped ? xcb_generate_id(connection_.handle()) : 0;
  const bool isAttached =
      isMapped && succeeded(connection_, xcb_shm_attach_checked(connection_.handle(), segment,
                                                                static_cast<std::uint32_t>(id), 0));
  // From here on the segment goes with the last of us that is attached.
  shmctl(id, IPC_RMID, nullptr);
  if (!isAttached) {
    if (isMapped) shmdt(memory);
    return false;
  }
  segment_ = segment;
  attached_ = memory;
  buffer_.data = static_cast<std::uint8_t*>(memory);
  return true;
}

PixelRect SharedPixels::put(xcb_drawable_t drawable, xcb_gcontext_t gc, int depth,
                            const PixelRect& part, PixelPoint to) const {
  const auto within = intersectionOf(part, {0, 0, buffer_.width, buffer_.height});
  if (within.isEmpty() || connection_.isLost()) return {};
  to = {to.x + within.x - part.x, to.y + within.y - part.y};
  if (segment_ == 0) return putThroughConnection({drawable, gc, depth}, within, to);
  xcb_shm_put_image(connection_.handle(), drawable, gc, extent(buffer_.width),
                    extent(buffer_.height), extent(within.x), extent(within.y),
                    extent(within.width), extent(within.height), coordinate(to.x), coordinate(to.y),
                    static_cast<std::uint8_t>(depth), XCB_IMAGE_FORMAT_Z_PIXMAP, 0, segment_, 0);
  return {};
}

// In bands that fit into xcb's queue, each after the connection was asked whether it takes one: xcb
// itself would wait for a server that reads nothing, for ever and inside of its function.
PixelRect SharedPixels::putThroughConnection(const Target& target, const PixelRect& part,
                                             PixelPoint to) const {
  auto* handle = connection_.handle();
  const int columns = std::min(part.width, bandPixels);
  const int rows = bandPixels / columns;
  for (int y = 0; y < part.height; y += rows) {
    for (int x = 0; x < part.width; x += columns) {
      if (!xcb::takesRequests(handle)) {
        return {part.x, part.y + y, part.width, part.height - y};
      }
      xcb_flush(handle);
      const PixelRect band{part.x + x, part.y + y, std::min(columns, part.width - x),
                           std::min(rows, part.height - y)};
      putBand(target, band, {to.x + x, to.y + y});
    }
  }
  return {};
}

void SharedPixels::putBand(const Target& target, const PixelRect& band, PixelPoint to) const {
  auto* handle = connection_.handle();
  const auto row = static_cast<std::size_t>(band.width) * 4;
  std::vector<std::uint8_t> bytes;
  bytes.reserve(row * static_cast<std::size_t>(band.height));
  for (int y = band.y; y < band.y + band.height; ++y) {
    const auto* start =
        buffer_.data + std::ptrdiff_t{y} * buffer_.stride + std::ptrdiff_t{band.x} * 4;
    bytes.insert(bytes.end(), start, start + row);
  }
  const bool serverIsLittle = xcb_get_setup(handle)->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
  if (serverIsLittle != isLittleEndian()) swapBytes(bytes);
  xcb_put_image(handle, XCB_IMAGE_FORMAT_Z_PIXMAP, target.drawable, target.gc, extent(band.width),
                extent(band.height), coordinate(to.x), coordinate(to.y), 0,
                static_cast<std::uint8_t>(target.depth), static_cast<std::uint32_t>(bytes.size()),
                bytes.data());
}

bool SharedPixels::fetch(xcb_drawable_t drawable) {
  auto* handle = connection_.handle();
  const auto width = extent(buffer_.width);
  const auto height = extent(buffer_.height);
  bool fetched = false;
  if (segment_ != 0) {
    const auto asked = xcb_shm_get_image(handle, drawable, 0, 0, width, height, ~0U,
                                         XCB_IMAGE_FORMAT_Z_PIXMAP, segment_, 0);
    const auto reply = xcb::answerTo<xcb_shm_get_image_reply_t>(handle, asked);
    fetched = reply != nullptr;
  } else {
    const auto asked =
        xcb_get_image(handle, XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, 0, 0, width, height, ~0U);
    const auto reply = xcb::answerTo<xcb_get_image_reply_t>(handle, asked);
    const auto length =
        reply ? static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) : std::size_t{0};
    fetched = reply && length >= own_.size();
    if (fetched) {
      std::memcpy(own_.data(), xcb_get_image_data(reply.get()), own_.size());
      const bool serverIsLittle =
          xcb_get_setup(handle)->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
      if (serverIsLittle != isLittleEndian()) swapBytes(own_);
    }
  }
  return fetched;
}

}  // namespace orvane::host::x11
