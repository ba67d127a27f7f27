#pragma once

#include <fractional-scale-v1-client.h>
#include <kde-output-order-v1-client.h>
#include <kwin-blur-client.h>
#include <viewporter-client.h>
#include <wayland-client.h>
#include <wlr-layer-shell-unstable-v1-client.h>
#include <xdg-output-unstable-v1-client.h>

#include <memory>

#include "linux/wayland/kwin_signs.h"

namespace orvane::host::wayland {

// How each kind of object is given back.
struct Destroy {
  void operator()(wl_display* it) const { wl_display_disconnect(it); }
  void operator()(wl_registry* it) const { wl_registry_destroy(it); }
  void operator()(wl_compositor* it) const { wl_compositor_destroy(it); }
  void operator()(wl_shm* it) const { wl_shm_destroy(it); }
  void operator()(wl_shm_pool* it) const { wl_shm_pool_destroy(it); }
  void operator()(wl_buffer* it) const { wl_buffer_destroy(it); }
  void operator()(wl_callback* it) const { wl_callback_destroy(it); }
  void operator()(wl_region* it) const { wl_region_destroy(it); }
  void operator()(wl_surface* it) const { wl_surface_destroy(it); }
  void operator()(wl_output* it) const {
    // Compositors before version 3 keep the object until the connection ends.
    if (wl_output_get_version(it) >= WL_OUTPUT_RELEASE_SINCE_VERSION) {
      wl_output_release(it);
    } else {
      wl_output_destroy(it);
    }
  }
  void operator()(zwlr_layer_shell_v1* it) const {
    if (zwlr_layer_shell_v1_get_version(it) >= ZWLR_LAYER_SHELL_V1_DESTROY_SINCE_VERSION) {
      zwlr_layer_shell_v1_destroy(it);
    } else {
      wl_proxy_destroy(reinterpret_cast<wl_proxy*>(it));
    }
  }
  void operator()(zwlr_layer_surface_v1* it) const { zwlr_layer_surface_v1_destroy(it); }
  void operator()(zxdg_output_manager_v1* it) const { zxdg_output_manager_v1_destroy(it); }
  void operator()(zxdg_output_v1* it) const { zxdg_output_v1_destroy(it); }
  void operator()(wp_viewporter* it) const { wp_viewporter_destroy(it); }
  void operator()(wp_viewport* it) const { wp_viewport_destroy(it); }
  void operator()(wp_fractional_scale_manager_v1* it) const {
    wp_fractional_scale_manager_v1_destroy(it);
  }
  void operator()(kde_output_order_v1* it) const { kde_output_order_v1_destroy(it); }
  void operator()(org_kde_kwin_blur_manager* it) const { org_kde_kwin_blur_manager_destroy(it); }
  void operator()(org_kde_kwin_blur* it) const { org_kde_kwin_blur_release(it); }
  void operator()(wp_fractional_scale_v1* it) const { wp_fractional_scale_v1_destroy(it); }
};

// Owns one object of the protocol.
template <class T>
using Handle = std::unique_ptr<T, Destroy>;

// The objects that a compositor offers once. Those it may lack are null.
struct Globals {
  Handle<wl_compositor> compositor;
  Handle<wl_shm> shm;
  Handle<zwlr_layer_shell_v1> layerShell;
  Handle<zxdg_output_manager_v1> xdgOutputs;                // optional
  Handle<wp_viewporter> viewporter;                         // optional
  Handle<wp_fractional_scale_manager_v1> fractionalScales;  // optional
  Handle<org_kde_kwin_blur_manager> blurs;                  // while the compositor blurs
  KWinSigns kwin;
};

}  // namespace orvane::host::wayland
