#include "linux/desktopicons/desktop_icons.h"

#include <array>
#include <cstddef>
#include <utility>

#include "linux/desktopicons/desktop_kind.h"
#include "linux/desktopicons/extension_backend.h"
#include "linux/desktopicons/icon_script.h"
#include "linux/desktopicons/icon_switch.h"
#include "linux/desktopicons/plasma_backend.h"
#include "linux/desktopicons/settings_backend.h"
#include "linux/desktopicons/xfconf_backend.h"

namespace orvane::host {
namespace {

using namespace desktopicons;
namespace fs = std::filesystem;

// A desktop sets up a new screen when it comes to it, and tells nobody when it has.
constexpr std::array<Duration, 3> kLooks = {std::chrono::seconds(1), std::chrono::seconds(3),
                                            std::chrono::seconds(10)};

// Null where there are no icons to hide.
std::unique_ptr<IconBackend> backendFor(const DesktopIconsOptions& options) {
  switch (desktopKind(options.currentDesktop)) {
    case DesktopKind::xfce:
      return options.connection ? makeXfconfBackend(options.connection) : nullptr;
    case DesktopKind::gnome:
      return makeExtensionBackend(shellExtensionFolders());
    case DesktopKind::cinnamon:
      return makeSettingsBackend(
          {"cinnamon", "org.nemo.desktop", "desktop-layout", "'false::false'"});
    case DesktopKind::mate:
      return makeSettingsBackend({"mate", "org.mate.background", "show-desktop-icons", "false"});
    case DesktopKind::budgie:
      return makeSettingsBackend(
          {"budgie", "org.buddiesofbudgie.budgie-desktop-view", "show", "false"});
    case DesktopKind::plasma:
      return options.connection ? makePlasmaBackend(options.connection) : nullptr;
    case DesktopKind::none:
      break;
  }
  return nullptr;
}

class IconScript final : public NSAppleScript {
 public:
  IconScript(IconSwitch* icons, IconWish wish) : icons_(icons), wish_(wish) {}
  std::optional<std::string> executeAndReturnError() override {
    if (icons_) icons_->request(wish_);
    return std::nullopt;
  }

 private:
  IconSwitch* const icons_;
  const IconWish wish_;
};

// The desktop is looked at when the first script comes: most runs never see one.
class Icons final : public DesktopIcons {
 public:
  explicit Icons(DesktopIconsOptions options) : options_(std::move(options)) {}

  [[nodiscard]] std::unique_ptr<NSAppleScript> makeScript(const std::string& source) override {
    const auto script = parseIconScript(source);
    if (!script.understood) return nullptr;
    return std::make_unique<IconScript>(icons(), script.wish);
  }

  void giveBackLeftovers() override {
    std::error_code unknown;
    if (!fs::exists(options_.stateFile, unknown)) return;
    if (auto* found = icons()) found->request(IconWish::show);
  }

  void screensChanged() override { lookLater(0); }

 private:
  void lookLater(std::size_t look) {
    if (!options_.mainActor || !switch_ || look >= kLooks.size()) return;
    look_ = options_.mainActor->after(kLooks.at(look), [this, look] {
      switch_->lookForNew();
      lookLater(look + 1);
    });
  }

  IconSwitch* icons() {
    if (!std::exchange(looked_, true)) {
      if (auto backend = backendFor(options_)) {
        switch_ = std::make_unique<IconSwitch>(std::move(backend), IconMemory(options_.stateFile));
      }
    }
    return switch_.get();
  }

  const DesktopIconsOptions options_;
  bool looked_ = false;
  std::unique_ptr<IconSwitch> switch_;
  Subscription look_;
};

}  // namespace

std::unique_ptr<DesktopIcons> makeDesktopIcons(const DesktopIconsOptions& options) {
  return std::make_unique<Icons>(options);
}

fs::path desktopIconsStatePath(const Environment& environment) {
  const auto base = baseDirectory(environment, "XDG_STATE_HOME", ".local/state");
  return base ? *base / "orvane" / "desktop-icons" : fs::path();
}

}  // namespace orvane::host
