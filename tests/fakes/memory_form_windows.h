#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/form_window.h"

namespace orvane::fakes {

// A form window in memory, which a test looks at and closes as the user would.
class MemoryFormWindow final : public FormWindow {
 public:
  MemoryFormWindow(std::vector<std::string>& log, Rect contentRect, unsigned style)
      : contentRect(contentRect), styleMask(style), log_(log) {}

  void center() override { log_.emplace_back("settings: centred"); }
  void setContentView(std::shared_ptr<FormView> view) override {
    content = std::move(view);
    log_.emplace_back("settings: content");
  }
  void show() override {
    visible = true;
    log_.emplace_back("settings: shown");
  }
  void makeKeyAndOrderFront() override { log_.emplace_back("settings: key and in front"); }

  Rect contentRect;
  unsigned styleMask;
  NSBackingStoreType backing{};
  bool deferred = true;
  std::shared_ptr<FormView> content;
  bool visible = false;

 private:
  std::vector<std::string>& log_;
};

// Makes form windows, or none where it is told that it cannot.
class MemoryFormWindowServer final : public FormWindowServer {
 public:
  explicit MemoryFormWindowServer(std::vector<std::string>& log) : log_(log) {}

  [[nodiscard]] std::shared_ptr<FormWindow> makeFormWindow(Rect contentRect, unsigned styleMask,
                                                           NSBackingStoreType backing,
                                                           bool defer) override {
    if (missing) return nullptr;
    auto window = std::make_shared<MemoryFormWindow>(log_, contentRect, styleMask);
    window->backing = backing;
    window->deferred = defer;
    windows.push_back(window);
    log_.emplace_back("settings: made");
    return window;
  }

  std::vector<std::shared_ptr<MemoryFormWindow>> windows;
  bool missing = false;

 private:
  std::vector<std::string>& log_;
};

}  // namespace orvane::fakes
