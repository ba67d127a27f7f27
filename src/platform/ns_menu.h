#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace orvane {

// Whoever carries out what a menu item stands for.
class NSActionTarget {
 public:
  virtual ~NSActionTarget() = default;

  // `action` is the name of an operation of the target; other names do nothing.
  virtual void perform(const std::string& action) = 0;
};

struct NSMenuItem {
  std::string title;
  std::string action;         // empty: none
  std::string keyEquivalent;  // with the Command key, while the menu is open; empty: none
  bool isSeparatorItem = false;
  std::weak_ptr<NSActionTarget> target;

  [[nodiscard]] static NSMenuItem separator() {
    NSMenuItem item;
    item.isSeparatorItem = true;
    return item;
  }
  // What happens when the user picks the item; nothing where it has no action or its target is
  // gone.
  void choose() const {
    if (const auto receiver = target.lock(); receiver && !action.empty()) receiver->perform(action);
  }
};

// A menu's items from top to bottom.
struct NSMenu {
  std::vector<NSMenuItem> itemArray;

  void addItem(NSMenuItem item) { itemArray.push_back(std::move(item)); }
};

}  // namespace orvane
