#include "linux/wayland/layer_surface.h"

#include <algorithm>

namespace orvane::host::wayland {

const zwlr_layer_surface_v1_listener LayerSurface::layerListener = {
    [](void* it, zwlr_layer_surface_v1*, std::uint32_t serial, std::uint32_t width,
       std::uint32_t height) {
      constexpr std::uint32_t most = 65535;
      static_cast<LayerSurface*>(it)->configured(serial, static_cast<int>(std::min(width, most)),
                                                 static_cast<int>(std::min(height, most)));
    },
    [](void* it, zwlr_layer_surface_v1*) {
      static_cast<LayerSurface*>(it)->observer_.surfaceClosed();
    },
};

LayerSurface::LayerSurface(const Globals& globals, wl_output* output, SurfaceRole role,
                           SurfaceArea area, Observer& observer)
    : observer_(observer),
      role_(std::move(role)),
      surface_(wl_compositor_create_surface(globals.compositor.get())),
      layerSurface_(zwlr_layer_shell_v1_get_layer_surface(
          globals.layerShell.get(), surface_.get(), output, role_.layer, role_.nameSpace.c_str())),
      asked_(area) {
  zwlr_layer_surface_v1_add_listener(layerSurface_.get(), &layerListener, this);
  followPreferredScale(globals);
  if (role_.ignoresPointer) ignorePointer(globals);
  zwlr_layer_surface_v1_set_anchor(
      layerSurface_.get(), ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT);
  // Not 0: the output's corner is the origin, also where a panel takes up that edge.
  zwlr_layer_surface_v1_set_exclusive_zone(layerSurface_.get(), -1);
  zwlr_layer_surface_v1_set_keyboard_interactivity(
      layerSurface_.get(), ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_NONE);
  zwlr_layer_surface_v1_set_margin(layerSurface_.get(), area.y, 0, 0, area.x);
  shown_ = area;
  sendSize();
}

void LayerSurface::followPreferredScale(const Globals& globals) {
  // Of use only together with a viewport, which maps any number of pixels to the size in points.
  if (!globals.viewporter || !globals.fractionalScales) return;
  static const wp_fractional_scale_v1_listener listener = {
      [](void* it, wp_fractional_scale_v1*, std::uint32_t per120) {
        constexpr std::uint32_t most = 120 * 100;
        auto& self = *static_cast<LayerSurface*>(it);
        if (per120 == 0 || per120 > most) return;
        self.preferredScale_ = SurfaceScale{static_cast<int>(per120)};
        self.observer_.surfaceRescaled();
      }};
  viewport_.reset(wp_viewporter_get_viewport(globals.viewporter.get(), surface_.get()));
  fractionalScale_.reset(wp_fractional_scale_manager_v1_get_fractional_scale(
      globals.fractionalScales.get(), surface_.get()));
  wp_fractional_scale_v1_add_listener(fractionalScale_.get(), &listener, this);
}

void LayerSurface::ignorePointer(const Globals& globals) {
  const Handle<wl_region> nowhere(wl_compositor_create_region(globals.compositor.get()));
  wl_surface_set_input_region(surface_.get(), nowhere.get());
}

void LayerSurface::sendSize() {
  zwlr_layer_surface_v1_set_size(layerSurface_.get(), static_cast<std::uint32_t>(asked_.width),
                                 static_cast<std::uint32_t>(asked_.height));
  wl_surface_commit(surface_.get());
  awaitsConfigure_ = true;
}

std::optional<SurfaceArea> LayerSurface::moveTo(const SurfaceArea& area) {
  // One question at a time, and never for the size that we have: each is sure to be answered.
  if (awaitsConfigure_) return std::nullopt;
  const bool resized = area.width != asked_.width || area.height != asked_.height;
  asked_ = area;
  if (!resized) return SurfaceArea{area.x, area.y, grantedWidth_, grantedHeight_};
  sendSize();
  return std::nullopt;
}

void LayerSurface::configured(std::uint32_t serial, int width, int height) {
  zwlr_layer_surface_v1_ack_configure(layerSurface_.get(), serial);
  // Zero leaves it to us; and nobody is served by more room than there is to show.
  grantedWidth_ = width == 0 ? asked_.width : std::min(width, asked_.width);
  grantedHeight_ = height == 0 ? asked_.height : std::min(height, asked_.height);
  awaitsConfigure_ = false;
  observer_.surfaceConfigured();
}

bool LayerSurface::blurBehind(const Globals& globals, const std::vector<PixelRect>& parts) {
  if (!globals.blurs) {
    // It went away together with what was asked of it, and has to be asked anew when it is back.
    blur_.reset();
    blurred_.clear();
    return false;
  }
  if (parts == blurred_) return false;
  blurred_ = parts;
  blur_.reset();
  if (parts.empty()) {
    org_kde_kwin_blur_manager_unset(globals.blurs.get(), surface_.get());
    return true;
  }
  const Handle<wl_region> region(wl_compositor_create_region(globals.compositor.get()));
  for (const auto& part : parts) {
    wl_region_add(region.get(), part.x, part.y, part.width, part.height);
  }
  blur_.reset(org_kde_kwin_blur_manager_create(globals.blurs.get(), surface_.get()));
  org_kde_kwin_blur_set_region(blur_.get(), region.get());
  org_kde_kwin_blur_commit(blur_.get());
  return true;
}

void LayerSurface::present(wl_buffer* buffer, const SurfaceArea& area, SurfaceScale scale,
                           const std::vector<PixelRect>& changed) {
  if (area.x != shown_.x || area.y != shown_.y) {
    // Together with the picture that belongs there.
    zwlr_layer_surface_v1_set_margin(layerSurface_.get(), area.y, 0, 0, area.x);
  }
  shown_ = area;
  if (viewport_) {
    wp_viewport_set_destination(viewport_.get(), area.width, area.height);
  } else {
    wl_surface_set_buffer_scale(surface_.get(), scale.per120 / 120);
  }
  wl_surface_attach(surface_.get(), buffer, 0, 0);
  for (const auto& rect : changed) {
    wl_surface_damage_buffer(surface_.get(), rect.x, rect.y, rect.width, rect.height);
  }
  requestFrame();
  wl_surface_commit(surface_.get());
}

void LayerSurface::requestFrame() {
  static const wl_callback_listener listener = {[](void* it, wl_callback*, std::uint32_t) {
    auto& self = *static_cast<LayerSurface*>(it);
    self.frame_.reset();
    self.observer_.surfaceShown();
  }};
  frame_.reset(wl_surface_frame(surface_.get()));
  wl_callback_add_listener(frame_.get(), &listener, this);
}

}  // namespace orvane::host::wayland
