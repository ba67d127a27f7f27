// linux/x11/ shows the program's windows on X servers: it is the WindowServer of every desktop that
// speaks X11, with and without a window manager or a compositing manager.
#pragma once

#include <algorithm>
#include <cstdint>

#include "linux/xcb/reply.h"

namespace orvane::host::x11 {

using xcb::Reply;

// An event seen as the kind that its type says it is.
template <class T>
const T& as(const xcb_generic_event_t& event) {
  return reinterpret_cast<const T&>(event);
}
// Without the bit that marks events sent by other clients.
inline int typeOf(const xcb_generic_event_t& event) { return event.response_type & 0x7f; }
inline bool isSentByClient(const xcb_generic_event_t& event) {
  return (event.response_type & 0x80) != 0;
}

// The protocol's coordinates have 16 bits; what lies beyond them cannot be shown.
constexpr std::int16_t coordinate(int value) {
  return static_cast<std::int16_t>(std::clamp(value, -32768, 32767));
}
constexpr std::uint16_t extent(int value) {
  return static_cast<std::uint16_t>(std::clamp(value, 0, 32767));
}

}  // namespace orvane::host::x11
