#pragma once

#include <xcb/xcb.h>

#include <optional>
#include <utility>

namespace orvane::host::hotkey {

// Tells a key that was pressed from one that is held: while it is held, servers send releases and
// presses in pairs of the same instant, or presses alone. Until it is released, all other keys come
// to us, too; they do not count.
class PressCounter {
 public:
  // Whether the event is the beginning of a press.
  bool isPress(const xcb_generic_event_t& event) {
    const auto kind = event.response_type & 0x7F;
    const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
    if (kind == XCB_KEY_RELEASE && held_ == key.detail) {
      held_.reset();
      released_ = {key.detail, key.time};
    }
    if (kind != XCB_KEY_PRESS || held_) return false;
    held_ = key.detail;
    return released_ != std::pair(key.detail, key.time);
  }

  // The release of a key may be missed while grabs change.
  void forget() { held_.reset(); }

 private:
  std::optional<xcb_keycode_t> held_;
  std::pair<xcb_keycode_t, xcb_timestamp_t> released_;
};

}  // namespace orvane::host::hotkey
