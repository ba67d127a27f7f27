#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/ns_status_bar.h"

namespace orvane::fakes {

// A status area that a test looks at and picks from.
class MemoryStatusBar final : public NSStatusBar {
 public:
  // What the area shows for an item that is there.
  struct Shown {
    double length = 0;
    std::optional<NSImage> image;
    NSCellImagePosition position = NSCellImagePosition::noImage;
    NSMenu menu;
  };

  explicit MemoryStatusBar(std::vector<std::string>& log) : log_(log) {}

  [[nodiscard]] std::unique_ptr<NSStatusItem> statusItem(double length) override {
    log_.emplace_back("status item");
    auto item = std::make_unique<Item>(*this, length);
    return item;
  }
  [[nodiscard]] std::optional<NSImage> image(const std::string& name,
                                             const std::string& description) const override {
    return hasSymbols ? std::optional(NSImage{name, description}) : std::nullopt;
  }

  // The items that are there, in the order in which they came.
  std::vector<std::shared_ptr<Shown>> items;
  bool hasButtons = true;
  bool hasSymbols = true;

 private:
  class Item final : public NSStatusItem, private NSStatusBarButton {
   public:
    Item(MemoryStatusBar& bar, double length)
        : bar_(bar), shown_(std::make_shared<Shown>(Shown{length, {}, {}, {}})) {
      bar_.items.push_back(shown_);
    }
    Item(const Item&) = delete;
    Item& operator=(const Item&) = delete;
    ~Item() override {
      std::erase(bar_.items, shown_);
      bar_.log_.emplace_back("status item removed");
    }
    [[nodiscard]] NSStatusBarButton* button() override { return bar_.hasButtons ? this : nullptr; }
    void setMenu(NSMenu menu) override { shown_->menu = std::move(menu); }

   private:
    void setImage(std::optional<NSImage> image) override { shown_->image = std::move(image); }
    void setImagePosition(NSCellImagePosition position) override { shown_->position = position; }

    MemoryStatusBar& bar_;
    std::shared_ptr<Shown> shown_;
  };

  std::vector<std::string>& log_;
};

}  // namespace orvane::fakes
