#pragma once

#include <cstdint>
#include <vector>

#include "linux/x11/connection.h"
#include "linux/x11/parts_to_put.h"
#include "linux/x11/shared_pixels.h"
#include "linux/x11/window_hints.h"

namespace orvane::host::x11 {

// What a window is made with; another style needs another window.
struct BoardStyle {
  bool isTranslucent = false;  // has an alpha channel, for a compositing manager to see through
  WindowHints hints;
  xcb_window_t managerWindow = 0;  // under which window manager it was made
  friend bool operator==(const BoardStyle&, const BoardStyle&) = default;
};

// Every desktop, where a window manager numbers its desktops.
inline constexpr std::uint32_t allDesktops = 0xffffffffU;

// One window on the server: what is drawn of a dashboard, out of taskbar, pager and keyboard focus,
// without decorations. Nothing here waits for the server.
class BoardWindow {
 public:
  // Not shown yet. `area` is in pixels of the root; `desktop` where the window is to appear.
  BoardWindow(Connection& connection, const BoardStyle& style, const PixelRect& area,
              std::uint32_t desktop);
  BoardWindow(const BoardWindow&) = delete;
  BoardWindow& operator=(const BoardWindow&) = delete;
  ~BoardWindow();

  [[nodiscard]] xcb_window_t id() const { return id_; }
  [[nodiscard]] const BoardStyle& style() const { return style_; }
  [[nodiscard]] const PixelRect& area() const { return area_; }

  void show();
  [[nodiscard]] bool isWanted() const { return isWanted_; }  // shown, as far as it is up to us
  void place(const PixelRect& area);
  void setPassesClicks(bool passes);
  // Moves a window that is shown to another desktop.
  void setDesktop(std::uint32_t desktop);
  // Above another window. Where a window manager does not take such a wish, as high as it lets a
  // window of this kind rise.
  void raiseAbove(xcb_window_t sibling, bool managerTakesWish);
  // Below all others, which only a window that is not managed can decide for itself.
  void lower();
  // Asks for a blur of what lies behind these parts of the window; none of them: nowhere.
  void setBlurBehind(const std::vector<PixelRect>& parts);
  // Copies a part of a picture of the whole window onto it. What the connection does not take now
  // is kept in mind, and the connection told that there is more to come.
  void put(const SharedPixels& picture, const PixelRect& part);
  // Goes on with what was kept in mind.
  void putRest(const SharedPixels& picture);

 private:
  void create();
  void describeToManager(std::uint32_t desktop) const;
  void describeState(std::uint32_t desktop) const;
  void describePlace() const;
  [[nodiscard]] int depth() const;
  void tellManager(Atom message, const std::uint32_t (&values)[5]) const;

  Connection& connection_;
  BoardStyle style_;
  PixelRect area_;
  xcb_window_t id_ = 0;
  xcb_gcontext_t gc_ = 0;
  xcb_colormap_t colormap_ = 0;
  bool isWanted_ = false;
  std::vector<PixelRect> blurred_;
  PartsToPut rest_;
};

}  // namespace orvane::host::x11
