#include "linux/settingswindow/gtk/decoration.h"

#include <algorithm>
#include <vector>

namespace orvane::window {
namespace {

using Buttons = std::vector<std::string>;

Buttons buttonsIn(std::string_view side) {
  Buttons buttons;
  while (!side.empty()) {
    const auto end = std::min(side.find(','), side.size());
    if (end > 0) buttons.emplace_back(side.substr(0, end));
    side.remove_prefix(std::min(end + 1, side.size()));
  }
  return buttons;
}

std::string joined(const Buttons& buttons) {
  std::string text;
  for (const auto& button : buttons) text += (text.empty() ? "" : ",") + button;
  return text;
}

bool has(const Buttons& buttons, const std::string& name) {
  return std::find(buttons.begin(), buttons.end(), name) != buttons.end();
}

}  // namespace

std::string titleButtons(std::string_view desktopLayout, bool isClosable, bool isMiniaturizable) {
  const auto colon = std::min(desktopLayout.find(':'), desktopLayout.size());
  Buttons left = buttonsIn(desktopLayout.substr(0, colon));
  Buttons right = buttonsIn(desktopLayout.substr(std::min(colon + 1, desktopLayout.size())));
  const bool closesAtLeft = has(left, "close");
  const bool minimizes = has(left, "minimize") || has(right, "minimize");
  if (isClosable && !closesAtLeft && !has(right, "close")) right.emplace_back("close");
  if (isMiniaturizable && !minimizes) {
    // Outwards from the title, closing comes last.
    if (closesAtLeft) {
      left.emplace_back("minimize");
    } else {
      right.insert(std::find(right.begin(), right.end(), "close"), "minimize");
    }
  }
  for (auto* side : {&left, &right}) {
    if (!isClosable) std::erase(*side, "close");
    if (!isMiniaturizable) std::erase(*side, "minimize");
  }
  return joined(left) + ':' + joined(right);
}

}  // namespace orvane::window
