#pragma once

#include <memory>
#include <vector>

#include "linux/x11/connection.h"
#include "linux/x11/root_picture.h"
#include "linux/x11/shared_pixels.h"
#include "view/painter.h"

namespace orvane::host::x11 {

// The picture of one window: the part of a scaled display list that is drawn, with the desktop's
// picture underneath where nobody else puts it there.
class Canvas {
 public:
  Canvas(Connection& connection, Painter& painter, const RootPicture& rootPicture)
      : connection_(connection), painter_(painter), rootPicture_(rootPicture) {}

  struct Extent {
    PixelRect area;         // of the scaled plane
    PixelPoint screen;      // the plane's corner on the root
    bool isOpaque = false;  // has the desktop's picture underneath
    friend bool operator==(const Extent&, const Extent&) = default;
  };
  // Forgets what was painted. Waits for the server.
  void begin(const Extent& extent);
  // Fetches the desktop's picture again; what was painted stays until it is painted again.
  void fetchBackdrop();
  void drop();
  [[nodiscard]] bool isReady() const { return pixels_ != nullptr; }
  [[nodiscard]] const Extent& extent() const { return extent_; }
  [[nodiscard]] const SharedPixels& pixels() const { return *pixels_; }

  // Paints the parts, given in pixels of the plane, and answers where they lie in the picture.
  std::vector<PixelRect> paint(const DisplayList& list, double scale,
                               const std::vector<PixelRect>& parts);

 private:
  Connection& connection_;
  Painter& painter_;
  const RootPicture& rootPicture_;
  Extent extent_;
  std::unique_ptr<SharedPixels> pixels_;
  std::unique_ptr<SharedPixels> backdrop_;
};

}  // namespace orvane::host::x11
