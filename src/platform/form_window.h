#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/ns_window.h"

namespace orvane {

// What a form window shows. Each host takes from it what it needs to draw it.
class FormView {
 public:
  virtual ~FormView() = default;
};

struct FormWindowStyleMask {
  static constexpr unsigned titled = 0x1;
  static constexpr unsigned closable = 0x2;
  static constexpr unsigned miniaturizable = 0x4;
};

// A window with a title bar that shows a form and takes part in the desktop like any other. The
// user closes it without asking; unless it is released when closed, it may be shown again as it
// was. Main thread only.
class FormWindow {
 public:
  virtual ~FormWindow() = default;

  // Read when the window is shown.
  std::string title;
  bool titlebarAppearsTransparent = false;
  bool isReleasedWhenClosed = true;

  // From its first showing on, the user decides where it stands.
  virtual void center() = 0;
  virtual void setContentView(std::shared_ptr<FormView> view) = 0;
  virtual void show() = 0;
  virtual void makeKeyAndOrderFront() = 0;
};

// Keeps a window, whether it is shown or not.
class NSWindowController {
 public:
  explicit NSWindowController(std::shared_ptr<FormWindow> window) : window_(std::move(window)) {}

  [[nodiscard]] const std::shared_ptr<FormWindow>& window() const { return window_; }
  void showWindow() const {
    if (window_) window_->show();
  }

 private:
  std::shared_ptr<FormWindow> window_;
};

// Where form windows are made. Main thread only; outlives them.
class FormWindowServer {
 public:
  virtual ~FormWindowServer() = default;

  // Null where this host can show no forms. The rectangle is that of the content, in points.
  [[nodiscard]] virtual std::shared_ptr<FormWindow> makeFormWindow(Rect contentRect,
                                                                   unsigned styleMask,
                                                                   NSBackingStoreType backing,
                                                                   bool defer) = 0;
};

}  // namespace orvane
