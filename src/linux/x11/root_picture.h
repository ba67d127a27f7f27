#pragma once

#include <optional>

#include "foundation/main_actor.h"
#include "linux/x11/connection.h"
#include "linux/x11/shared_pixels.h"

namespace orvane::host::x11 {

// The desktop's picture as programs that set it leave it on the root window: a pixmap, repeated to
// fill the root, whose name stands in a property. It is what a window that nobody composes has to
// draw underneath itself.
class RootPicture {
 public:
  RootPicture(Connection& connection, MainActor& actor);

  // Another picture was set.
  [[nodiscard]] Subject<>& changed() { return changed_; }

  // Fills `pixels`, opaque, with the part of the root that begins at `at`; with an even dark grey
  // where no picture is set. Waits for the server's answers.
  void fill(SharedPixels& pixels, PixelPoint at) const;

 private:
  [[nodiscard]] bool concernsPicture(const xcb_generic_event_t& event) const;
  struct Source {
    xcb_pixmap_t pixmap = 0;
    std::uint8_t depth = 0;  // 24, or 32 where a toolkit set the picture
  };
  // Nothing when there is none that can be drawn from.
  [[nodiscard]] std::optional<Source> source() const;
  [[nodiscard]] bool fetch(const Source& source, SharedPixels& pixels, PixelPoint at) const;

  Connection& connection_;
  Subject<> changed_;
  Debounce settling_;
  Subscription events_;
};

}  // namespace orvane::host::x11
