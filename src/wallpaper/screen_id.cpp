#include "wallpaper/screen_id.h"

#include <cmath>
#include <cstdint>

#include "foundation/fatal_error.h"

namespace orvane {
namespace {

std::string integerText(double points) {
  constexpr double beyondIntegers = 9'223'372'036'854'775'808.0;  // 2^63
  const double whole = std::trunc(points);
  if (!(whole >= -beyondIntegers && whole < beyondIntegers)) {
    fatalError("A screen's frame cannot be written in integers.");
  }
  return std::to_string(static_cast<std::int64_t>(whole));
}

}  // namespace

std::string screenID(const NSScreen& screen) {
  if (screen.screenNumber) return std::to_string(*screen.screenNumber);
  const Rect& frame = screen.frame;
  return integerText(frame.x) + ":" + integerText(frame.y) + ":" + integerText(frame.width) + ":" +
         integerText(frame.height);
}

std::vector<DisplayOption> availableDisplays(const WindowServer& server) {
  const auto main = server.mainScreen();
  std::vector<DisplayOption> options;
  for (const auto& screen : server.screens()) {
    const bool isMain = main && main->identity == screen.identity;
    const Rect& visible = screen.visibleFrame;
    const std::string detail =
        isMain ? "Main" : integerText(visible.width) + " x " + integerText(visible.height);
    const std::string number = std::to_string(options.size() + 1);
    options.push_back({screenID(screen), "Display " + number + " - " + detail});
  }
  return options;
}

}  // namespace orvane
