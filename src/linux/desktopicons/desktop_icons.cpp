#include "linux/desktopicons/desktop_icons.h"

#include "linux/desktopicons/icon_script.h"

namespace orvane::host {
namespace {

class IconScript final : public NSAppleScript {
 public:
  std::optional<std::string> executeAndReturnError() override { return std::nullopt; }
};

class DesktopIcons final : public AppleScripts {
 public:
  [[nodiscard]] std::unique_ptr<NSAppleScript> makeScript(const std::string& source) override {
    const auto script = desktopicons::parseIconScript(source);
    return script.understood ? std::make_unique<IconScript>() : nullptr;
  }
};

}  // namespace

std::unique_ptr<AppleScripts> makeDesktopIcons() { return std::make_unique<DesktopIcons>(); }

}  // namespace orvane::host
