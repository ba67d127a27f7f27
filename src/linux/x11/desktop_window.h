#pragma once

#include <memory>

#include "foundation/main_actor.h"
#include "linux/x11/board_window.h"
#include "linux/x11/canvas.h"
#include "linux/x11/client_stack.h"
#include "linux/x11/desktop_watch.h"
#include "linux/x11/presence.h"
#include "linux/x11/root_picture.h"
#include "linux/x11/screen_list.h"
#include "linux/x11/sight.h"
#include "platform/ns_window.h"
#include "platform/periodic_schedule.h"
#include "view/drawn_area.h"
#include "view/scene.h"

namespace orvane::host::x11 {

// What the windows of one display share; all of it outlives them.
struct Surroundings {
  Connection& connection;
  MainActor& actor;
  PeriodicSchedule& schedule;
  const TextMeasurer& measurer;
  Painter& painter;
  ScreenList& screens;
  ClientStack& stack;
  DesktopWatch& desktop;
  RootPicture& rootPicture;
  Sight& sight;
};

// A window as the logic knows it. To the logic it covers its screen; on the server it is no larger
// than what is drawn, exists only while something is, and beats only while it can be seen.
class DesktopWindow final : public NSWindow {
 public:
  DesktopWindow(const Surroundings& around, Rect contentRect);

  [[nodiscard]] Rect frame() const override { return frame_; }
  void setFrame(Rect frame, bool display) override;
  [[nodiscard]] NSHostingView* contentView() override { return content_.get(); }
  void setContentView(std::unique_ptr<NSHostingView> view) override;
  void orderBack() override;
  void close() override;

 private:
  // Brings the window on the server in line with properties, frame and desktop.
  void place();
  void makeBoard();
  void showBoard();
  void beginAnewIfNotShown();
  [[nodiscard]] BoardStyle wantedStyle() const;
  [[nodiscard]] std::uint32_t wantedDesktop() const;
  [[nodiscard]] bool joinsAllSpaces() const;
  void putAtBottom();

  // Draws what the content is at the instant.
  void render(Date now);
  void removeBoard();
  void renderAll(const PixelRect& area);
  void paint(const std::vector<PixelRect>& parts);
  [[nodiscard]] Date currentInstant() const;

  // The window on the server at its place, without a picture.
  void standUnseen();
  void placeBoard();

  // Begins or ends the beat as the window comes into sight or is lost from it.
  void followSight();
  // One that waits for the server to show it is neither in sight nor out of it.
  [[nodiscard]] bool isInSight() const;
  [[nodiscard]] bool isOutOfSight() const;
  [[nodiscard]] bool isBehindFullScreen() const;
  // Draws at once what was out of sight until now.
  void sightChanged();
  void contentWillChange();

  void handle(const xcb_generic_event_t& event);
  void presenceChanged(Presence::Change change);
  void expose(const xcb_expose_event_t& event);
  void put(const PixelRect& part);
  void configured(const xcb_configure_notify_event_t& event, bool isFromManager);
  void desktopChanged();
  void stackChanged();
  void pictureChanged();

  Surroundings around_;
  Rect frame_;
  double scale_ = 1;
  PixelPoint corner_;  // of the frame on the root
  std::unique_ptr<NSHostingView> content_;
  std::unique_ptr<Scene> scene_;

  bool isOrderedIn_ = false;
  bool joinedAllSpaces_ = false;
  Presence presence_;
  int attempts_ = 0;     // at being shown, since it was shown last
  int corrections_ = 0;  // of its place, against a window manager that puts it elsewhere
  bool putsAllWhenPlaced_ = false;
  int restacks_ = 0;
  Date restacksSince_;

  DrawnArea<PixelRect> area_;
  Canvas canvas_;
  std::unique_ptr<BoardWindow> board_;
  std::optional<Date> lastInstant_;

  Subscription beat_;
  Subscription contentChanges_;
  Subscription rebuild_;
  Subscription showing_;
  Subscription events_;
  Subscription desktopChanges_;
  Subscription stackChanges_;
  Subscription roomToSend_;
  Subscription pictureChanges_;
  Subscription sightChanges_;
};

}  // namespace orvane::host::x11
