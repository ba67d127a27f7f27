#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/ns_menu.h"

namespace orvane {

// A system symbol, by its name.
struct NSImage {
  std::string systemSymbolName;
  std::string accessibilityDescription;

  friend bool operator==(const NSImage&, const NSImage&) = default;
};

enum class NSCellImagePosition : int { noImage = 0, imageOnly = 1 };

// A length of an item: as much as its content needs.
inline constexpr double NSVariableStatusItemLength = -1;

// The face of a status item.
class NSStatusBarButton {
 public:
  virtual ~NSStatusBarButton() = default;

  virtual void setImage(std::optional<NSImage> image) = 0;
  virtual void setImagePosition(NSCellImagePosition position) = 0;
};

// One item of the status area. Destroying it takes it away.
class NSStatusItem {
 public:
  virtual ~NSStatusItem() = default;

  // Owned by the item; null where the host shows none.
  [[nodiscard]] virtual NSStatusBarButton* button() = 0;
  virtual void setMenu(NSMenu menu) = 0;
};

// The desktop's status area. Main thread only; outlives its items.
class NSStatusBar {
 public:
  virtual ~NSStatusBar() = default;

  // Where the desktop has no status area (any more, or yet), the item waits for one unseen.
  [[nodiscard]] virtual std::unique_ptr<NSStatusItem> statusItem(double length) = 0;
  // Nothing where there is no symbol of this name.
  [[nodiscard]] virtual std::optional<NSImage> image(
      const std::string& systemSymbolName, const std::string& accessibilityDescription) const = 0;
};

}  // namespace orvane
