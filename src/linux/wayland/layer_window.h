#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "linux/wayland/connection.h"
#include "linux/wayland/layer_picture.h"
#include "linux/wayland/layer_surface.h"
#include "linux/wayland/surface_area.h"
#include "linux/wayland/wayland_desktop.h"
#include "platform/ns_window.h"
#include "view/drawn_area.h"
#include "view/scene.h"

namespace orvane::host::wayland {

// A window as a layer surface that covers what the window draws, on the output that has the
// window's frame. While nothing is drawn, or no output has the frame, there is no surface.
//
// The picture follows three rules. Time comes from the schedule alone. Drawing waits until the
// compositor has shown the last picture, and then draws what is true by then; where that takes
// long, the window does not hear the schedule either, for as long as it takes. A change that is
// announced between two ticks is drawn with the instant of the last one, so that no second is
// shown early.
class LayerWindow final : public NSWindow,
                          public std::enable_shared_from_this<LayerWindow>,
                          private LayerSurface::Observer,
                          private AwaitingWindow {
 public:
  LayerWindow(const WaylandNeighbours& neighbours, Connection& connection, Rect frame);
  ~LayerWindow() override;

  [[nodiscard]] Rect frame() const override { return frame_; }
  void setFrame(Rect frame, bool display) override;
  [[nodiscard]] NSHostingView* contentView() override { return content_.get(); }
  void setContentView(std::unique_ptr<NSHostingView> view) override;
  void orderBack() override;
  void close() override;

 private:
  [[nodiscard]] Awaits awaits() const override;
  void surfaceConfigured() override { refresh(); }
  void surfaceShown() override;
  void surfaceRescaled() override { refresh(); }
  void surfaceClosed() override;

  void place();
  void allowSurface();
  void standOn(std::uint32_t output);
  [[nodiscard]] const Output* chooseOutput() const;
  [[nodiscard]] SurfaceRole wantedRole() const;
  [[nodiscard]] SurfaceScale scale() const;
  void beginTicks();
  void tick(Date instant);
  void rebuildLater();
  [[nodiscard]] bool isSurfaceBusy() const;
  void refresh();
  void show(const SurfaceArea& area);
  void draw(const SurfaceArea& area);
  [[nodiscard]] bool blurBehindGlass(const SurfaceArea& area);
  void dropSurface();
  void retryLater();
  void outputRemoved(std::uint32_t name);
  void outputDescribed(std::uint32_t name);

  WaylandNeighbours neighbours_;
  Connection& connection_;
  Rect frame_;
  bool onScreen_ = false;
  std::uint32_t output_ = 0;  // name of the global; 0: none
  Date instant_;
  std::unique_ptr<NSHostingView> content_;
  std::optional<Scene> scene_;
  DrawnArea<SurfaceArea> drawnArea_;
  LayerPicture picture_;
  std::optional<LayerSurface> surface_;
  bool stale_ = false;  // something changed while nothing could be drawn
  bool rebuildPosted_ = false;
  bool complained_ = false;  // of memory that cannot be had
  int closedInARow_ = 0;     // surfaces that the compositor closed soon after they were made
  bool refused_ = false;     // the compositor wants no surface of this window
  int ticksShown_ = 0;       // of the present surface
  int ticksUnseen_ = 0;      // in a row, while the compositor was waited for
  Subscription ticks_;
  Subscription contentWillChange_;
  Subscription outputRemoved_;
  Subscription outputDescribed_;
  Subscription retry_;
};

}  // namespace orvane::host::wayland
