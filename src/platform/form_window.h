#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "foundation/subscription.h"
#include "platform/form.h"
#include "platform/ns_window.h"

namespace orvane {

// What a form window shows, and where the user's edits go. Main thread only.
class FormView {
 public:
  virtual ~FormView() = default;

  // As of now.
  [[nodiscard]] virtual Form form() const = 0;
  // Carries out an edit at once. One that the form, as it is now, does not offer changes nothing:
  // an unknown or disabled control, a value of another type, out of range or not among the choices.
  virtual void edit(const FormEdit& edit) = 0;
  // Tells, in a later turn of the loop and once for all that happened until then, that form() may
  // answer something else, or that an edit was not carried out as it came.
  [[nodiscard]] virtual Subscription onChange(std::function<void()> observer) = 0;
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
