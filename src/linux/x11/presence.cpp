#include "linux/x11/presence.h"

namespace orvane::host::x11 {

Presence::Change Presence::take(const xcb_generic_event_t& event, xcb_window_t window) {
  switch (typeOf(event)) {
    case XCB_VISIBILITY_NOTIFY: {
      const auto& seen = as<xcb_visibility_notify_event_t>(event);
      if (seen.window != window) break;
      isObscured_ = seen.state == XCB_VISIBILITY_FULLY_OBSCURED;
      return Change::visibility;
    }
    case XCB_MAP_NOTIFY:
      if (as<xcb_map_notify_event_t>(event).window != window) break;
      isMapped_ = true;
      isPutAside_ = false;
      return Change::mapped;
    case XCB_UNMAP_NOTIFY:
      if (as<xcb_unmap_notify_event_t>(event).window != window) break;
      isMapped_ = false;
      isPutAside_ = true;
      return Change::unmapped;
    default:
      break;
  }
  return Change::none;
}

}  // namespace orvane::host::x11
