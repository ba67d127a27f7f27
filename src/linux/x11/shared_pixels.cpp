#include "linux/x11/shared_pixels.h"

#include <sys/mman.h>
#include <sys/shm.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <utility>

#include "linux/files/file_descriptor.h"
#include "linux/xcb/answers.h"

namespace orvane::host::x11 {

namespace {

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

void SharedPixels::put(xcb_drawable_t drawable, xcb_gcontext_t gc, int depth, const PixelRect& part,
                       PixelPoint to) const {
  const auto within = intersectionOf(part, {0, 0, buffer_.width, buffer_.height});
  if (within.isEmpty()) return;
  to = {to.x + within.x - part.x, to.y + within.y - part.y};
  if (segment_ == 0) return putThroughConnection(drawable, gc, depth, within, to);
  xcb_shm_put_image(connection_.handle(), drawable, gc, extent(buffer_.width),
                    extent(buffer_.height), extent(within.x), extent(within.y),
                    extent(within.width), extent(within.height), coordinate(to.x), coordinate(to.y),
                    static_cast<std::uint8_t>(depth), XCB_IMAGE_FORMAT_Z_PIXMAP, 0, segment_, 0);
}

// In bands of as many rows as fit into one request.
void SharedPixels::putThroughConnection(xcb_drawable_t drawable, xcb_gcontext_t gc, int depth,
                                        const PixelRect& part, PixelPoint to) const {
  const auto row = static_cast<std::size_t>(part.width) * 4;
  const std::size_t room = xcb_get_maximum_request_length(connection_.handle()) * std::size_t{4};
  if (connection_.isLost() || room < row + 64) return;
  const int rowsAtOnce = static_cast<int>(std::min<std::size_t>((room - 64) / row, 1024));
  const bool serverIsLittle =
      xcb_get_setup(connection_.handle())->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
  for (int y = 0; y < part.height; y += rowsAtOnce) {
    const int rows = std::min(rowsAtOnce, part.height - y);
    std::vector<std::uint8_t> band;
    band.reserve(row * static_cast<std::size_t>(rows));
    for (int i = 0; i < rows; ++i) {
      const auto* start = buffer_.data + std::ptrdiff_t{part.y + y + i} * buffer_.stride +
                          std::ptrdiff_t{part.x} * 4;
      band.insert(band.end(), start, start + row);
    }
    if (serverIsLittle != isLittleEndian()) swapBytes(band);
    xcb_put_image(connection_.handle(), XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, gc, extent(part.width),
                  extent(rows), coordinate(to.x), coordinate(to.y + y), 0,
                  static_cast<std::uint8_t>(depth), static_cast<std::uint32_t>(band.size()),
                  band.data());
  }
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
