#pragma once

#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "view/pixel_grid.h"

namespace orvane::desktop_test {

// What a screen shows, as 0x00RRGGBB from the top left.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;
  [[nodiscard]] std::uint32_t at(int x, int y) const {
    return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                  static_cast<std::size_t>(x)] &
           0xffffffU;
  }
  friend bool operator==(const Picture&, const Picture&) = default;
};

// A window as the server tells of it.
struct SeenWindow {
  xcb_window_t id = 0;
  xcb_window_t topLevel = 0;  // itself, or the frame around it
  std::string instance;       // the first part of its WM_CLASS
  std::string name;
  PixelRect onRoot;
  int depth = 0;
  bool isViewable = false;
  bool isUnmanaged = false;
};

// A client of its own that looks at a display from the server's side, and does with pointer and
// windows what a user would.
class Observer {
 public:
  // Throws when the display cannot be opened.
  explicit Observer(const std::string& display);
  Observer(const Observer&) = delete;
  Observer& operator=(const Observer&) = delete;
  ~Observer();

  [[nodiscard]] xcb_connection_t* connection() const { return connection_; }
  [[nodiscard]] xcb_window_t root() const { return screen_->root; }
  [[nodiscard]] xcb_atom_t atom(const std::string& name) const;
  [[nodiscard]] std::vector<std::uint32_t> numbers(xcb_window_t window,
                                                   const std::string& property) const;

  [[nodiscard]] xcb_window_t windowManager() const;  // the window that stands for it, or 0
  [[nodiscard]] bool isComposited() const;
  [[nodiscard]] xcb_pixmap_t rootPicture() const;  // or 0

  [[nodiscard]] std::vector<SeenWindow> windows() const;
  [[nodiscard]] std::vector<SeenWindow> windowsOf(const std::string& instance) const;
  // The first that can be seen.
  [[nodiscard]] std::optional<SeenWindow> find(const std::string& instance,
                                               const std::string& name) const;
  // From the bottom to the top.
  [[nodiscard]] std::vector<xcb_window_t> topLevels() const;
  [[nodiscard]] Picture grab() const;

  void movePointer(int x, int y) const;
  void click(int x, int y, int button) const;
  void pressEscape() const;
  // An ordinary window of one colour, managed like any other; gone with the observer.
  xcb_window_t openWindow(const PixelRect& where, std::uint32_t colour) const;
  void closeWindow(xcb_window_t window) const;
  // As a user has a window fill the screen, or no longer.
  void setFullScreen(xcb_window_t window, bool isFull) const;
  // As compositing managers are told to let something shine through a window.
  void makeTranslucent(xcb_window_t window) const;
  [[nodiscard]] xcb_window_t activeWindow() const;  // or 0
  void showWorkspace(std::uint32_t number) const;
  void showDesktop() const;  // in place of the ordinary windows
  // Sets a picture of one colour on the root, as programs that set wallpapers do.
  void setRootPicture(std::uint32_t colour) const;
  void setResources(const std::string& text) const;
  // Waits until the server has done everything that was asked.
  void sync() const;

 private:
  void visit(xcb_window_t window, xcb_window_t topLevel, PixelPoint at,
             std::vector<SeenWindow>& seen) const;
  void tellManager(const std::string& message, std::uint32_t value) const;
  void tellManager(xcb_window_t about, const std::string& message,
                   const std::array<std::uint32_t, 5>& values) const;
  [[nodiscard]] std::string text(xcb_window_t window, xcb_atom_t property) const;

  xcb_connection_t* connection_;
  xcb_screen_t* screen_;
};

// Where and when a window was painted, as the server noticed it.
struct Painting {
  double seconds = 0;  // since 1970
  PixelRect where;     // in the window
};

// Listens for what is painted into a window from now on.
class DamageWatch {
 public:
  DamageWatch(const std::string& display, xcb_window_t window);

  // All that was seen until `seconds` since 1970.
  std::vector<Painting> until(double seconds);

 private:
  Observer observer_;
  int firstEvent_ = 0;
  std::vector<Painting> seen_;
};

double wallClock();  // seconds since 1970

}  // namespace orvane::desktop_test
