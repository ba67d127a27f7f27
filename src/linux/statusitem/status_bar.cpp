#include "linux/statusitem/status_bar.h"

#include <optional>
#include <utility>

#include "linux/statusitem/status_icon.h"
#include "linux/statusitem/status_notifier_item.h"

namespace orvane::host {
namespace {

using statusitem::ItemFace;
using statusitem::StatusNotifierItem;

// The one symbolic icon that is installed with the program; hosts recolour it for their panel.
constexpr const char* kThemedTimer = "org.orvane.Orvane-symbolic";

// An item that gathers what it is told and shows itself when it has its menu: hosts read an item
// once, and what comes later many of them miss.
class Item final : public NSStatusItem, private NSStatusBarButton {
 public:
  explicit Item(const StatusBarNeighbours& around) : around_(around) {}

  [[nodiscard]] NSStatusBarButton* button() override { return this; }
  void setMenu(NSMenu menu) override {
    shown_.reset();
    menu_ = std::move(menu);
    showAgain();
  }

 private:
  void setImage(std::optional<NSImage> image) override {
    image_ = std::move(image);
    if (shown_) showAgain();
  }
  // The status area has no place for a title, so every position shows the image alone.
  void setImagePosition(NSCellImagePosition) override {}

  void showAgain() {
    shown_.reset();
    if (isConnected()) {
      shown_.emplace(around_.connection, around_.mainActor, face(), menu_,
                     around_.takeActivationToken);
    }
  }
  [[nodiscard]] bool isConnected() const {
    return around_.connection && !g_dbus_connection_is_closed(around_.connection);
  }
  [[nodiscard]] ItemFace face() const {
    if (!image_) return {};
    const auto& name = image_->systemSymbolName;
    return {name == "timer" ? kThemedTimer : "", statusitem::symbolPixels(name, around_.painter),
            image_->accessibilityDescription};
  }

  const StatusBarNeighbours around_;
  std::optional<NSImage> image_;
  NSMenu menu_;
  std::optional<StatusNotifierItem> shown_;
};

class StatusBar final : public NSStatusBar {
 public:
  explicit StatusBar(const StatusBarNeighbours& around) : around_(around) {}

  // Every length is as much as the image takes: hosts give each item one cell.
  [[nodiscard]] std::unique_ptr<NSStatusItem> statusItem(double) override {
    return std::make_unique<Item>(around_);
  }
  [[nodiscard]] std::optional<NSImage> image(const std::string& name,
                                             const std::string& description) const override {
    if (!statusitem::hasSymbol(name)) return std::nullopt;
    return NSImage{name, description};
  }

 private:
  const StatusBarNeighbours around_;
};

}  // namespace

std::unique_ptr<NSStatusBar> makeStatusBar(const StatusBarNeighbours& neighbours) {
  return std::make_unique<StatusBar>(neighbours);
}

}  // namespace orvane::host
