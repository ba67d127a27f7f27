#include "app/returning_window.h"

#include <utility>

namespace orvane {

ReturningWindow::ReturningWindow(const std::unique_ptr<WindowServer>& server, Make make)
    : server_(server), make_(make) {}

void ReturningWindow::setFrame(Rect frame, bool display) {
  make_.contentRect = frame;
  if (!onScreen_ && !real_) return;
  comeBack();
  if (auto* window = real()) window->setFrame(frame, display);
}

void ReturningWindow::setContentView(std::unique_ptr<NSHostingView> view) {
  content_ = std::move(view);
  if (real_) giveContent();
}

void ReturningWindow::orderBack() {
  onScreen_ = true;
  if (auto* window = real()) window->orderBack();
}

void ReturningWindow::close() {
  onScreen_ = false;
  if (real_) real_->close();
}

void ReturningWindow::comeBack() {
  if (onScreen_ && !real_) orderBack();
}

NSWindow* ReturningWindow::real() {
  if (!real_ && server_) {
    real_ = server_->makeWindow(make_.contentRect, make_.styleMask, make_.backing, make_.defer);
    giveContent();
  }
  if (real_) real_->properties = properties;
  return real_.get();
}

// A copy: the desktop's window takes its own with it when it goes. What is shown is shared.
void ReturningWindow::giveContent() {
  real_->setContentView(content_ ? std::make_unique<NSHostingView>(*content_) : nullptr);
}

}  // namespace orvane
