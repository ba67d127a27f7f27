#pragma once

#include <xcb/shm.h>

#include <memory>
#include <vector>

#include "linux/x11/connection.h"
#include "view/painter.h"

namespace orvane::host::x11 {

// A picture in memory that the server reads and writes too, where both are on one machine; where
// they are not, one that is sent through the connection. 32 bits a pixel, all zero at first.
class SharedPixels {
 public:
  // Waits for the server's answer. Falls back to what works everywhere.
  SharedPixels(Connection& connection, int width, int height);
  SharedPixels(const SharedPixels&) = delete;
  SharedPixels& operator=(const SharedPixels&) = delete;
  ~SharedPixels();

  [[nodiscard]] const PixelBuffer& buffer() const { return buffer_; }

  // To be called when much of the picture was read or written: its pages stay with the file that
  // the server sees, but are no longer held by this process until it comes to them again.
  void letPagesGo() const;

  // Asks the server to copy `part` of the picture to the place `to` of a drawable. It may read the
  // memory a little later: what is painted over before is put again by whoever paints it. Answers
  // what of the part is still to be put, since the connection takes no more now; empty: nothing.
  [[nodiscard]] PixelRect put(xcb_drawable_t drawable, xcb_gcontext_t gc, int depth,
                              const PixelRect& part, PixelPoint to) const;
  // Fills the picture from the top left corner of a drawable that is at least as large. Waits for
  // the server; false when the drawable could not be read.
  bool fetch(xcb_drawable_t drawable);

 private:
  bool attach();
  bool attachDescriptor(std::size_t size);
  bool attachSegment(std::size_t size);
  struct Target {
    xcb_drawable_t drawable;
    xcb_gcontext_t gc;
    int depth;
  };
  [[nodiscard]] PixelRect putThroughConnection(const Target& target, const PixelRect& part,
                                               PixelPoint to) const;
  void putBand(const Target& target, const PixelRect& band, PixelPoint to) const;

  Connection& connection_;
  PixelBuffer buffer_;
  xcb_shm_seg_t segment_ = 0;  // 0: not shared
  void* mapped_ = nullptr;     // of a file descriptor
  void* attached_ = nullptr;   // of a System V segment
  std::vector<std::uint8_t> own_;
};

}  // namespace orvane::host::x11
