#pragma once

#include <memory>

#include "platform/ns_window.h"

namespace orvane {

// A window that outlives the desktop it stands on: it keeps what it was told, and once there is a
// desktop again, stands there as before.
class ReturningWindow final : public NSWindow {
 public:
  struct Make {
    Rect contentRect;
    unsigned styleMask;
    NSBackingStoreType backing;
    bool defer;
  };
  // `server` is the desktop of the time, or null, and outlives the window.
  ReturningWindow(const std::unique_ptr<WindowServer>& server, Make make);

  [[nodiscard]] Rect frame() const override { return make_.contentRect; }
  void setFrame(Rect frame, bool display) override;
  [[nodiscard]] NSHostingView* contentView() override { return content_.get(); }
  void setContentView(std::unique_ptr<NSHostingView> view) override;
  void orderBack() override;
  void close() override;

  // Gives back what it has of the desktop, which is about to go.
  void leaveDesktop() { real_.reset(); }
  // Stands on the desktop if it stood on the last one, and does not stand there yet.
  void comeBack();

 private:
  // The desktop's own window, told all that this one was told; null without a desktop.
  NSWindow* real();
  void giveContent();

  const std::unique_ptr<WindowServer>& server_;
  Make make_;
  bool onScreen_ = false;
  std::unique_ptr<NSHostingView> content_;
  std::shared_ptr<NSWindow> real_;
};

}  // namespace orvane
