#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/ns_window.h"

namespace orvane::fakes {

class MemoryWindowServer;

// A window that exists in memory alone and tells the server what is done to it.
class MemoryWindow final : public NSWindow {
 public:
  MemoryWindow(MemoryWindowServer& server, int number, Rect contentRect)
      : server_(server), number_(number), frame_(contentRect) {}
  ~MemoryWindow() override;

  [[nodiscard]] Rect frame() const override { return frame_; }
  void setFrame(Rect frame, bool display) override;
  [[nodiscard]] NSHostingView* contentView() override { return contentView_.get(); }
  void setContentView(std::unique_ptr<NSHostingView> view) override;
  void orderBack() override;
  void close() override;

  // Windows count from 1 in the order in which they were made.
  [[nodiscard]] int number() const { return number_; }
  [[nodiscard]] bool isVisible() const { return visible_; }

 private:
  void record(const std::string& operation);

  MemoryWindowServer& server_;
  int number_;
  Rect frame_;
  bool visible_ = false;
  std::unique_ptr<NSHostingView> contentView_;
};

// A desktop in memory: screens that a test attaches and removes, and every operation on a window in
// `operations`, as "window 1: back".
class MemoryWindowServer final : public WindowServer {
 public:
  [[nodiscard]] std::vector<NSScreen> screens() const override { return attached; }
  [[nodiscard]] std::optional<NSScreen> mainScreen() const override {
    for (const auto& screen : attached) {
      if (screen.identity == mainIdentity) return screen;
    }
    return std::nullopt;
  }
  [[nodiscard]] std::shared_ptr<NSWindow> makeWindow(Rect contentRect, unsigned styleMask,
                                                     NSBackingStoreType backing,
                                                     bool defer) override {
    auto window = std::make_shared<MemoryWindow>(*this, ++made, contentRect);
    lastStyleMask = styleMask;
    lastBacking = backing;
    lastDefer = defer;
    operations.push_back("window " + std::to_string(made) + ": made");
    windows.push_back(window);
    return window;
  }
  [[nodiscard]] std::int32_t windowLevelForKey(CGWindowLevelKey key) const override {
    return levels.at(key);
  }

  // A screen with these points, known by its name; the first one attached becomes main.
  NSScreen& attach(const std::string& identity, Rect frame,
                   std::optional<std::int64_t> screenNumber) {
    if (attached.empty()) mainIdentity = identity;
    attached.push_back({frame, frame, screenNumber, identity});
    return attached.back();
  }
  void remove(const std::string& identity) {
    std::erase_if(attached, [&](const NSScreen& screen) { return screen.identity == identity; });
  }
  // The numbers of the windows on the screen, in the order in which they were made.
  [[nodiscard]] std::vector<int> visibleWindows() const {
    std::vector<int> numbers;
    for (const auto& weak : windows) {
      const auto window = weak.lock();
      if (window && window->isVisible()) numbers.push_back(window->number());
    }
    return numbers;
  }
  [[nodiscard]] std::shared_ptr<MemoryWindow> window(int number) const {
    return windows.at(static_cast<std::size_t>(number - 1)).lock();
  }

  std::vector<NSScreen> attached;
  std::string mainIdentity;
  std::map<CGWindowLevelKey, std::int32_t> levels = {{CGWindowLevelKey::desktopWindow, -2147483623},
                                                     {CGWindowLevelKey::backstopMenu, -20}};
  int made = 0;
  unsigned lastStyleMask = 0;
  NSBackingStoreType lastBacking{};
  bool lastDefer = true;
  std::vector<std::string> operations;
  std::vector<std::weak_ptr<MemoryWindow>> windows;
};

inline MemoryWindow::~MemoryWindow() { record("released"); }
inline void MemoryWindow::record(const std::string& operation) {
  server_.operations.push_back("window " + std::to_string(number_) + ": " + operation);
}
inline void MemoryWindow::setFrame(Rect frame, bool display) {
  frame_ = frame;
  record(display ? "frame, display" : "frame");
}
inline void MemoryWindow::setContentView(std::unique_ptr<NSHostingView> view) {
  contentView_ = std::move(view);
  record("content");
}
inline void MemoryWindow::orderBack() {
  visible_ = true;
  record("back");
}
inline void MemoryWindow::close() {
  visible_ = false;
  record("close");
}

}  // namespace orvane::fakes
