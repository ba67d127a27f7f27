#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "linux/wayland/handles.h"
#include "linux/wayland/surface_area.h"
#include "view/pixel_grid.h"

namespace orvane::host::wayland {

// How a surface stands among the others.
struct SurfaceRole {
  zwlr_layer_shell_v1_layer layer = ZWLR_LAYER_SHELL_V1_LAYER_BOTTOM;
  std::string nameSpace;
  bool ignoresPointer = true;
  friend bool operator==(const SurfaceRole&, const SurfaceRole&) = default;
};

// One layer surface at its place on one output: not moved by panels, never with the keyboard.
// Destroying it takes it off the screen.
class LayerSurface {
 public:
  // Hears of the surface. Each of these calls may destroy it.
  class Observer {
   public:
    virtual ~Observer() = default;
    virtual void surfaceConfigured() = 0;  // it may be presented at the place last asked for
    virtual void surfaceShown() = 0;       // what was presented is seen; the next may come
    virtual void surfaceRescaled() = 0;
    virtual void surfaceClosed() = 0;  // by the compositor; it is of no more use
  };

  LayerSurface(const Globals& globals, wl_output* output, SurfaceRole role, SurfaceArea area,
               Observer& observer);
  LayerSurface(const LayerSurface&) = delete;
  LayerSurface& operator=(const LayerSurface&) = delete;

  [[nodiscard]] const SurfaceRole& role() const { return role_; }
  // What the compositor prefers, when it has told.
  [[nodiscard]] std::optional<SurfaceScale> preferredScale() const { return preferredScale_; }
  // Its size was asked for and is not granted yet.
  [[nodiscard]] bool awaitsConfigure() const { return awaitsConfigure_; }
  // The compositor has not yet shown what was presented last.
  [[nodiscard]] bool isFramePending() const { return frame_ != nullptr; }

  // Asks for room at another place. Where that needs the compositor's consent the answer is nothing
  // and surfaceConfigured() follows; until then what is shown stays. Else the place to draw at,
  // which may be smaller than was asked for.
  [[nodiscard]] std::optional<SurfaceArea> moveTo(const SurfaceArea& area);

  // Asks for a blur of what lies behind these parts, in points of the surface, where the compositor
  // offers that. Answers whether it changes anything; it does so with the next picture or commit().
  [[nodiscard]] bool blurBehind(const Globals& globals, const std::vector<PixelRect>& parts);
  void commit() { wl_surface_commit(surface_.get()); }

  // Shows the buffer at the place that moveTo() answered. `changed` are pixels of the buffer.
  void present(wl_buffer* buffer, const SurfaceArea& area, SurfaceScale scale,
               const std::vector<PixelRect>& changed);

 private:
  static const zwlr_layer_surface_v1_listener layerListener;
  void sendSize();
  void configured(std::uint32_t serial, int width, int height);
  void requestFrame();
  void followPreferredScale(const Globals& globals);
  void ignorePointer(const Globals& globals);

  Observer& observer_;
  SurfaceRole role_;
  Handle<wl_surface> surface_;
  Handle<zwlr_layer_surface_v1> layerSurface_;
  Handle<wp_viewport> viewport_;
  Handle<wp_fractional_scale_v1> fractionalScale_;
  Handle<wl_callback> frame_;
  Handle<org_kde_kwin_blur> blur_;
  std::vector<PixelRect> blurred_;
  std::optional<SurfaceScale> preferredScale_;
  SurfaceArea asked_;     // the place last asked for
  SurfaceArea shown_;     // margins and size as the compositor has them
  int grantedWidth_ = 0;  // as last configured
  int grantedHeight_ = 0;
  bool awaitsConfigure_ = true;
};

}  // namespace orvane::host::wayland
