#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "foundation/color.h"
#include "platform/ns_screen.h"
#include "platform/ns_view.h"
#include "view/geometry.h"

namespace orvane {

struct NSWindowStyleMask {
  static constexpr unsigned fullSizeContentView = 0x8000;
};

struct NSWindowCollectionBehavior {
  static constexpr unsigned canJoinAllSpaces = 0x1;
  static constexpr unsigned stationary = 0x10;
  static constexpr unsigned ignoresCycle = 0x40;
};

enum class NSBackingStoreType : unsigned { buffered = 2 };
enum class NSWindowTitleVisibility : int { visible = 0, hidden = 1 };
enum class NSWindowAnimationBehavior : int { defaultBehavior = 0, none = 2 };

// What a window is told to be. Plain values: a host acts on those that mean something to it.
struct NSWindowProperties {
  bool isReleasedWhenClosed = true;
  NSWindowTitleVisibility titleVisibility = NSWindowTitleVisibility::visible;
  bool titlebarAppearsTransparent = false;
  Color backgroundColor = Color::white();
  bool isOpaque = true;
  bool hasShadow = true;
  bool ignoresMouseEvents = false;
  bool acceptsMouseMovedEvents = true;
  NSWindowAnimationBehavior animationBehavior = NSWindowAnimationBehavior::defaultBehavior;
  bool hidesOnDeactivate = true;
  bool canHide = true;
  unsigned collectionBehavior = 0;
  std::int64_t level = 0;

  friend bool operator==(const NSWindowProperties&, const NSWindowProperties&) = default;
};

// One window. It exists on the screen from orderBack() to close(), whichever properties it has;
// changes to properties of a window on the screen take effect at the next setFrame() or
// orderBack(). Destroying it closes it. Main thread only.
class NSWindow {
 public:
  virtual ~NSWindow() = default;

  NSWindowProperties properties;

  [[nodiscard]] virtual Rect frame() const = 0;
  // Moves the window to the screen whose frame this is, and redraws at once if `display`.
  virtual void setFrame(Rect frame, bool display) = 0;
  // Owned by the window; null until set.
  [[nodiscard]] virtual NSHostingView* contentView() = 0;
  virtual void setContentView(std::unique_ptr<NSHostingView> view) = 0;
  // Shows the window, behind all others of its level.
  virtual void orderBack() = 0;
  // Takes the window off the screen; orderBack() may show it again.
  virtual void close() = 0;
};

// Keys of CGWindowLevelForKey.
enum class CGWindowLevelKey : std::int32_t { desktopWindow = 2, backstopMenu = 3 };

// The screens and windows of one desktop. Outlives its windows. Main thread only.
class WindowServer {
 public:
  virtual ~WindowServer() = default;

  // In the desktop's own order; empty while nothing is attached.
  [[nodiscard]] virtual std::vector<NSScreen> screens() const = 0;
  [[nodiscard]] virtual std::optional<NSScreen> mainScreen() const = 0;
  [[nodiscard]] virtual std::shared_ptr<NSWindow> makeWindow(Rect contentRect, unsigned styleMask,
                                                             NSBackingStoreType backing,
                                                             bool defer) = 0;
  // CGWindowLevelForKey.
  [[nodiscard]] virtual std::int32_t windowLevelForKey(CGWindowLevelKey key) const = 0;
};

}  // namespace orvane
