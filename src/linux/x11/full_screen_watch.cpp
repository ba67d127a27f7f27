#include "linux/x11/full_screen_watch.h"

#include <algorithm>

#include "linux/x11/properties.h"
#include "linux/xcb/answers.h"

namespace orvane::host::x11 {

namespace {

// The window's own rectangle on the root, without the frame that may be around it; empty when it
// is not shown, or is gone.
PixelRect placeOnRoot(const Connection& connection, xcb_window_t window) {
  auto* handle = connection.handle();
  const auto askedState = xcb_get_window_attributes(handle, window);
  const auto askedSize = xcb_get_geometry(handle, window);
  const auto askedCorner = xcb_translate_coordinates(handle, window, connection.root(), 0, 0);
  const auto state = xcb::answerTo<xcb_get_window_attributes_reply_t>(handle, askedState);
  const auto size = xcb::answerTo<xcb_get_geometry_reply_t>(handle, askedSize);
  const auto corner = xcb::answerTo<xcb_translate_coordinates_reply_t>(handle, askedCorner);
  if (!state || !size || !corner || state->map_state != XCB_MAP_STATE_VIEWABLE) return {};
  return {corner->dst_x, corner->dst_y, size->width, size->height};
}

bool hasAlphaChannel(const Connection& connection, xcb_window_t window) {
  const auto reply = xcb::answerTo<xcb_get_geometry_reply_t>(
      connection.handle(), xcb_get_geometry(connection.handle(), window));
  return !reply || reply->depth == 32;
}

}  // namespace

FullScreenWatch::FullScreenWatch(Connection& connection, MainActor& actor)
    : connection_(connection), actor_(actor), settling_(actor, quiet, [this] { refresh(); }) {
  events_ = connection_.events().subscribe([this](const auto& event) { take(event); });
  refresh();
}

bool FullScreenWatch::covers(const PixelRect& area) const {
  return std::any_of(covered_.begin(), covered_.end(),
                     [&](const PixelRect& part) { return intersectionOf(part, area) == area; });
}

void FullScreenWatch::take(const xcb_generic_event_t& event) {
  const auto soon = [this] { turn_ = actor_.after(Duration::zero(), [this] { refresh(); }); };
  switch (typeOf(event)) {
    case XCB_PROPERTY_NOTIFY: {
      const auto& property = as<xcb_property_notify_event_t>(event);
      if (property.window == connection_.root() &&
          property.atom == connection_.atom(Atom::netActiveWindow)) {
        soon();
      }
      break;
    }
    case XCB_UNMAP_NOTIFY:
      if (as<xcb_unmap_notify_event_t>(event).window == active_) soon();
      break;
    case XCB_DESTROY_NOTIFY:
      if (as<xcb_destroy_notify_event_t>(event).window == active_) soon();
      break;
    case XCB_CONFIGURE_NOTIFY:
      if (as<xcb_configure_notify_event_t>(event).window != active_) break;
      if (covered_.empty()) {
        settling_.signal();
      } else {
        soon();
      }
      break;
    default:
      break;
  }
}

void FullScreenWatch::refresh() {
  if (connection_.isLost()) return;
  follow(numberProperty(connection_, connection_.root(), connection_.atom(Atom::netActiveWindow))
             .value_or(XCB_NONE));
  auto next = query();
  if (next == covered_) return;
  covered_ = std::move(next);
  changed_.send();
}

// The events of our own windows are selected by those who made them.
void FullScreenWatch::follow(xcb_window_t window) {
  if (connection_.isOurs(window)) window = XCB_NONE;
  if (window == active_) return;
  selectEvents(XCB_EVENT_MASK_NO_EVENT);
  active_ = window;
  selectEvents(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
}

// That the window is gone by then is nothing to report.
void FullScreenWatch::selectEvents(std::uint32_t mask) const {
  if (active_ == XCB_NONE) return;
  const auto asked =
      xcb_change_window_attributes_checked(connection_.handle(), active_, XCB_CW_EVENT_MASK, &mask);
  xcb_discard_reply(connection_.handle(), asked.sequence);
}

std::vector<PixelRect> FullScreenWatch::query() const {
  if (active_ == XCB_NONE || !fillsAScreen()) return {};
  const auto onRoot = placeOnRoot(connection_, active_);
  return onRoot.isEmpty() ? std::vector<PixelRect>{} : opaqueParts(onRoot);
}

// A maximized window does not count: desktops with an overview draw it small there, with the board
// in sight beside it.
bool FullScreenWatch::fillsAScreen() const {
  const auto states = numbersProperty(connection_, active_, connection_.atom(Atom::netWmState));
  const auto has = [&](Atom state) {
    return std::find(states.begin(), states.end(), connection_.atom(state)) != states.end();
  };
  return has(Atom::netWmStateFullscreen) && !has(Atom::netWmStateHidden);
}

// A window with an alpha channel tells in a property where it is opaque all the same.
std::vector<PixelRect> FullScreenWatch::opaqueParts(const PixelRect& onRoot) const {
  constexpr std::uint32_t full = 0xffffffffU;
  const auto opacity = connection_.atom(Atom::netWmWindowOpacity);
  if (numberProperty(connection_, active_, opacity).value_or(full) != full) return {};
  if (!hasAlphaChannel(connection_, active_)) return {onRoot};
  const auto numbers =
      numbersProperty(connection_, active_, connection_.atom(Atom::netWmOpaqueRegion));
  std::vector<PixelRect> parts;
  for (std::size_t i = 0; i + 4 <= numbers.size(); i += 4) {
    const auto number = [&](std::size_t offset) { return static_cast<int>(numbers[i + offset]); };
    const PixelRect part{onRoot.x + number(0), onRoot.y + number(1), number(2), number(3)};
    parts.push_back(intersectionOf(part, onRoot));
  }
  return parts;
}

}  // namespace orvane::host::x11
