// What the server and the desktop tell of a window, and what the window answers.

#include <cmath>

#include "linux/x11/desktop_window.h"

namespace orvane::host::x11 {

namespace {

// A window manager that insists on another place or order is not fought forever.
constexpr int patienceWithPlace = 3;
constexpr int patienceWithOrder = 5;
constexpr TimeInterval orderMemory = 10;

}  // namespace

void DesktopWindow::handle(const xcb_generic_event_t& event) {
  if (!board_) return;
  presenceChanged(presence_.take(event, board_->id()));
  if (!board_) return;
  switch (typeOf(event)) {
    case XCB_EXPOSE:
      if (as<xcb_expose_event_t>(event).window == board_->id()) {
        expose(as<xcb_expose_event_t>(event));
      }
      break;
    case XCB_CONFIGURE_NOTIFY:
      configured(as<xcb_configure_notify_event_t>(event), isSentByClient(event));
      break;
    default:
      break;
  }
}

void DesktopWindow::presenceChanged(Presence::Change change) {
  if (change == Presence::Change::none) return;
  if (change == Presence::Change::mapped) {
    showing_ = {};
    attempts_ = 0;
    // xfwm4 takes a window's input shape over to its frame only when it changes while the window
    // is managed, which it is now.
    board_->setPassesClicks(properties.ignoresMouseEvents);
  }
  sightChanged();
}

void DesktopWindow::expose(const xcb_expose_event_t& event) {
  put({event.x, event.y, event.width, event.height});
}

// Out of sight the picture is let go instead, so that all of it is drawn when it is seen again.
void DesktopWindow::put(const PixelRect& part) {
  if (isOutOfSight()) canvas_.drop();
  if (canvas_.isReady()) board_->put(canvas_.pixels(), part);
}

// Only events from the window manager, or for a window that it does not manage, have coordinates of
// the root; those from the server are relative to a frame that may be around the window.
void DesktopWindow::configured(const xcb_configure_notify_event_t& event, bool isFromManager) {
  if (event.window != board_->id()) return;
  if (putsAllWhenPlaced_) put({0, 0, board_->area().width, board_->area().height});
  if (!isFromManager && !board_->style().hints.overrideRedirect) return;
  const PixelRect actual{event.x, event.y, event.width, event.height};
  if (actual == board_->area()) {
    putsAllWhenPlaced_ = false;
    return;
  }
  if (++corrections_ <= patienceWithPlace) board_->place(board_->area());
}

void DesktopWindow::desktopChanged() {
  if (isOrderedIn_ && board_) place();
}

void DesktopWindow::stackChanged() {
  if (!board_ || !board_->style().hints.below) return;
  const auto desktop = around_.stack.desktopAbove(board_->id());
  if (!desktop) return;
  const auto now = around_.actor.now();
  if (std::abs(now - restacksSince_) > orderMemory) {
    restacksSince_ = now;
    restacks_ = 0;
  }
  if (++restacks_ <= patienceWithOrder)
    board_->raiseAbove(*desktop, around_.desktop.kind().restacksOnRequest);
}

void DesktopWindow::pictureChanged() {
  if (!board_ || !canvas_.isReady() || !canvas_.extent().isOpaque) return;
  if (isOutOfSight()) return canvas_.drop();
  canvas_.fetchBackdrop();
  paint({canvas_.extent().area});
}

}  // namespace orvane::host::x11
