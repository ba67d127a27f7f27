#include "app/returning_desktop.h"

#include <utility>

namespace orvane {

ReturningDesktop::ReturningDesktop(Environment environment)
    : environment_(std::move(environment)),
      attempts_(environment_.mainActor, environment_.policy,
                {[this](Duration patience) { return reconnect(patience); },
                 environment_.sessionHasEnded, [this](auto end) { gaveUp(end); }}) {}

ReturningDesktop::~ReturningDesktop() {
  for (const auto& window : windows()) window->leaveDesktop();
}

std::vector<std::string> ReturningDesktop::open(Duration patience) {
  auto failures = connect(patience);
  if (server_) attempts_.stands();
  return failures;
}

// Whoever tells of the loss is in the middle of it, and may not be taken down until it is through.
std::vector<std::string> ReturningDesktop::connect(Duration patience) {
  connection_ = std::make_shared<bool>(true);
  const auto onLost = [this, weak = std::weak_ptr(connection_)](const DesktopLoss& loss) {
    if (weak.expired()) return;
    environment_.mainActor.post([this, weak, loss] {
      if (!weak.expired()) lost(loss);
    });
  };
  auto opened = environment_.open(
      {patience, environment_.sessionHasEnded, onLost, static_cast<bool>(loyalty_)});
  server_ = std::move(opened.server);
  if (!server_) {
    connection_.reset();
    return std::move(opened.failures);
  }
  desktopLevel_ = server_->windowLevelForKey(CGWindowLevelKey::desktopWindow);
  backstopLevel_ = server_->windowLevelForKey(CGWindowLevelKey::backstopMenu);
  return {};
}

void ReturningDesktop::lost(const DesktopLoss& loss) {
  connection_.reset();
  lostWhat_ = loss.what;
  for (const auto& window : windows()) window->leaveDesktop();
  server_.reset();
  announceScreens();
  loyalty_ = environment_.mainActor.after(environment_.policy.loyalty, [this] { loyalty_ = {}; });
  attempts_.lost(loss.isRefusal);
}

bool ReturningDesktop::reconnect(Duration patience) {
  (void)connect(patience);  // why not is of no interest as long as it may yet come
  if (!server_) return false;
  loyalty_.cancel();
  announceScreens();
  // Whoever follows the screens places windows in the next turn. What stands elsewhere on the new
  // desktop is then shown there alone, and the others come back after it.
  environment_.mainActor.post([this, weak = std::weak_ptr(connection_)] {
    if (!weak.expired()) bringWindowsBack();
  });
  return true;
}

void ReturningDesktop::bringWindowsBack() {
  for (const auto& window : windows()) window->comeBack();
}

void ReturningDesktop::gaveUp(ReturnAttempts::End end) {
  loyalty_.cancel();
  const auto reason = [&]() -> std::string {
    switch (end) {
      case ReturnAttempts::End::sessionEnded:
        return ", and the session has ended.";
      case ReturnAttempts::End::refused:
        return " each time, and it is left at that.";
      case ReturnAttempts::End::limitPassed:
        break;
    }
    const auto limit = std::chrono::duration_cast<std::chrono::seconds>(environment_.policy.limit);
    return ", and no desktop has come back within " + std::to_string(limit.count()) + " seconds.";
  };
  environment_.gaveUp(lostWhat_ + reason());
}

void ReturningDesktop::announceScreens() {
  environment_.notificationCenter.post(NSApplicationDidChangeScreenParametersNotification);
}

std::vector<NSScreen> ReturningDesktop::screens() const {
  return server_ ? server_->screens() : std::vector<NSScreen>{};
}

std::optional<NSScreen> ReturningDesktop::mainScreen() const {
  return server_ ? server_->mainScreen() : std::nullopt;
}

std::shared_ptr<NSWindow> ReturningDesktop::makeWindow(Rect contentRect, unsigned styleMask,
                                                       NSBackingStoreType backing, bool defer) {
  std::erase_if(windows_, [](const auto& window) { return window.expired(); });
  auto window = std::make_shared<ReturningWindow>(
      server_, ReturningWindow::Make{contentRect, styleMask, backing, defer});
  windows_.push_back(window);
  return window;
}

std::int32_t ReturningDesktop::windowLevelForKey(CGWindowLevelKey key) const {
  if (server_) return server_->windowLevelForKey(key);
  return key == CGWindowLevelKey::desktopWindow ? desktopLevel_ : backstopLevel_;
}

std::vector<std::shared_ptr<ReturningWindow>> ReturningDesktop::windows() const {
  std::vector<std::shared_ptr<ReturningWindow>> alive;
  for (const auto& weak : windows_) {
    if (auto window = weak.lock()) alive.push_back(std::move(window));
  }
  return alive;
}

}  // namespace orvane
