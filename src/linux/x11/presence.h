#pragma once

#include "linux/x11/xcb_types.h"

namespace orvane::host::x11 {

// What the server told of one window since it was made.
class Presence {
 public:
  enum class Change { none, mapped, unmapped, visibility };

  // For a window that we never have hidden: whoever unmaps it is somebody else.
  Change take(const xcb_generic_event_t& event, xcb_window_t window);

  [[nodiscard]] bool isMapped() const { return isMapped_; }
  [[nodiscard]] bool isPutAside() const { return isPutAside_; }  // unmapped by somebody else
  [[nodiscard]] bool isObscured() const { return isObscured_; }

 private:
  bool isMapped_ = false;
  bool isPutAside_ = false;
  bool isObscured_ = false;
};

}  // namespace orvane::host::x11
