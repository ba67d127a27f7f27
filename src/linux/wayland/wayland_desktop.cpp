#include "linux/wayland/wayland_desktop.h"

#include "linux/wayland/connection.h"
#include "linux/wayland/layer_window.h"
#include "linux/wayland/window_levels.h"

namespace orvane::host {
namespace {

class LayerShellServer final : public WindowServer {
 public:
  explicit LayerShellServer(const WaylandNeighbours& neighbours)
      : neighbours_(neighbours),
        connection_({[this] { announceScreens(); },
                     [this](const DesktopLoss& loss) { announceLoss(loss); }}) {}

  [[nodiscard]] std::string open() {
    return connection_.open(
        {std::chrono::steady_clock::now() + neighbours_.patience, neighbours_.isInVain});
  }

  [[nodiscard]] std::vector<NSScreen> screens() const override {
    return connection_.outputs().screens();
  }
  [[nodiscard]] std::optional<NSScreen> mainScreen() const override {
    return connection_.outputs().mainScreen();
  }
  [[nodiscard]] std::shared_ptr<NSWindow> makeWindow(Rect contentRect, unsigned, NSBackingStoreType,
                                                     bool) override {
    return std::make_shared<wayland::LayerWindow>(neighbours_, connection_, contentRect);
  }
  [[nodiscard]] std::int32_t windowLevelForKey(CGWindowLevelKey key) const override {
    return wayland::levelFor(key);
  }

 private:
  // A turn later: the events of one change of the layout arrive together, and are one change.
  void announceScreens() {
    if (std::exchange(announced_, true)) return;
    postWhileAlive([this] {
      announced_ = false;
      neighbours_.notifications.post(NSApplicationDidChangeScreenParametersNotification);
    });
  }
  void announceLoss(const DesktopLoss& loss) {
    if (!neighbours_.onConnectionLost) return;
    postWhileAlive([this, loss] { neighbours_.onConnectionLost(loss); });
  }
  void postWhileAlive(std::function<void()> work) {
    neighbours_.mainActor.post([alive = std::weak_ptr(alive_), work = std::move(work)] {
      if (!alive.expired()) work();
    });
  }

  WaylandNeighbours neighbours_;
  wayland::Connection connection_;
  bool announced_ = false;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace

WaylandDesktop makeWaylandDesktop(const WaylandNeighbours& neighbours) {
  auto server = std::make_unique<LayerShellServer>(neighbours);
  auto failure = server->open();
  if (!failure.empty()) return {nullptr, std::move(failure)};
  return {std::move(server), {}};
}

}  // namespace orvane::host
