#include "linux/x11/full_screen_watch.h"

#include <algorithm>
#include <initializer_list>

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

// A maximized window does not count: desktops with an overview draw it small there, with the board
// in sight beside it.
bool isFullScreen(const Connection& connection, const std::vector<std::uint32_t>& states) {
  const auto has = [&](Atom state) {
    return std::find(states.begin(), states.end(), connection.atom(state)) != states.end();
  };
  return has(Atom::netWmStateFullscreen) && !has(Atom::netWmStateHidden);
}

bool isFullScreen(const Connection& connection, xcb_window_t window) {
  return isFullScreen(connection,
                      numbersProperty(connection, window, connection.atom(Atom::netWmState)));
}

bool isIn(const std::vector<xcb_window_t>& windows, xcb_window_t window) {
  return std::find(windows.begin(), windows.end(), window) != windows.end();
}

// A window's title may change every second, so only one that fills a screen tells of its
// properties.
constexpr std::uint32_t activeEvents = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
constexpr std::uint32_t fillingEvents =
    XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;

std::uint32_t eventsOf(bool fillsAScreen, bool isActive) {
  if (fillsAScreen) return fillingEvents;
  return isActive ? activeEvents : 0U;
}

}  // namespace

FullScreenWatch::FullScreenWatch(Connection& connection, MainActor& actor)
    : connection_(connection), actor_(actor), settling_(actor, quiet, [this] { refresh(); }) {
  events_ = connection_.events().subscribe([this](const auto& event) { take(event); });
  learnFirst();
  refresh();
}

bool FullScreenWatch::covers(const PixelRect& area) const {
  return std::any_of(covered_.begin(), covered_.end(),
                     [&](const PixelRect& part) { return intersectionOf(part, area) == area; });
}

bool FullScreenWatch::isFollowed(xcb_window_t window) const {
  return window == active_ || isIn(filling_, window);
}

void FullScreenWatch::take(const xcb_generic_event_t& event) {
  const auto soon = [this] { turn_ = actor_.after(Duration::zero(), [this] { refresh(); }); };
  switch (typeOf(event)) {
    case XCB_PROPERTY_NOTIFY:
      if (concerns(as<xcb_property_notify_event_t>(event))) soon();
      break;
    case XCB_MAP_NOTIFY:
      if (isFollowed(as<xcb_map_notify_event_t>(event).window)) soon();
      break;
    case XCB_UNMAP_NOTIFY:
      if (isFollowed(as<xcb_unmap_notify_event_t>(event).window)) soon();
      break;
    case XCB_DESTROY_NOTIFY:
      if (isFollowed(as<xcb_destroy_notify_event_t>(event).window)) soon();
      break;
    case XCB_CONFIGURE_NOTIFY: {
      const auto window = as<xcb_configure_notify_event_t>(event).window;
      if (!isFollowed(window)) break;
      if (window == active_ && covered_.empty()) {
        settling_.signal();
      } else {
        soon();
      }
      break;
    }
    default:
      break;
  }
}

bool FullScreenWatch::concerns(const xcb_property_notify_event_t& property) const {
  const auto isOneOf = [&](std::initializer_list<Atom> names) {
    return std::any_of(names.begin(), names.end(),
                       [&](Atom name) { return property.atom == connection_.atom(name); });
  };
  if (property.window == connection_.root()) {
    return property.atom == connection_.atom(Atom::netActiveWindow) ||
           (!filling_.empty() && property.atom == connection_.atom(Atom::netCurrentDesktop));
  }
  return isFollowed(property.window) && isOneOf({Atom::netWmState, Atom::netWmWindowOpacity,
                                                 Atom::netWmOpaqueRegion, Atom::netWmDesktop});
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

// All of them are asked at once, for the sake of connections that are far.
void FullScreenWatch::learnFirst() {
  const auto windows = numbersProperty(connection_, connection_.root(),
                                       connection_.atom(Atom::netClientListStacking));
  std::vector<xcb_get_property_cookie_t> asked;
  asked.reserve(windows.size());
  for (const auto window : windows) {
    asked.push_back(xcb_get_property(connection_.handle(), 0, window,
                                     connection_.atom(Atom::netWmState), XCB_ATOM_ATOM, 0, 64));
  }
  for (std::size_t i = 0; i < windows.size(); ++i) {
    const auto reply = xcb::answerTo<xcb_get_property_reply_t>(connection_.handle(), asked[i]);
    if (!reply || reply->format != 32 || connection_.isOurs(windows[i])) continue;
    const auto* states = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    const auto count = xcb_get_property_value_length(reply.get()) / 4;
    if (isFullScreen(connection_, {states, states + count})) filling_.push_back(windows[i]);
  }
  for (const auto window : filling_) selectEvents(window, fillingEvents);
}

// The events of our own windows are selected by those who made them.
void FullScreenWatch::follow(xcb_window_t active) {
  if (connection_.isOurs(active)) active = XCB_NONE;
  std::vector<xcb_window_t> known = filling_;
  if (active_ != XCB_NONE && !isIn(known, active_)) known.push_back(active_);
  if (active != XCB_NONE && !isIn(known, active)) known.push_back(active);
  std::vector<xcb_window_t> filling;
  for (const auto window : known) {
    const bool fills = isFullScreen(connection_, window);
    if (fills) filling.push_back(window);
    const auto before = eventsOf(isIn(filling_, window), window == active_);
    const auto wanted = eventsOf(fills, window == active);
    if (wanted != before) selectEvents(window, wanted);
  }
  active_ = active;
  filling_ = std::move(filling);
}

// That the window is gone by then is nothing to report.
void FullScreenWatch::selectEvents(xcb_window_t window, std::uint32_t mask) const {
  const auto asked =
      xcb_change_window_attributes_checked(connection_.handle(), window, XCB_CW_EVENT_MASK, &mask);
  xcb_discard_reply(connection_.handle(), asked.sequence);
}

// While no window is active there may be an overview, which draws all of them small.
std::vector<PixelRect> FullScreenWatch::query() const {
  std::vector<PixelRect> all;
  if (active_ == XCB_NONE) return all;
  for (const auto window : filling_) {
    if (!isOnShownDesktop(window)) continue;
    const auto parts = opaqueParts(window);
    all.insert(all.end(), parts.begin(), parts.end());
  }
  return all;
}

// Some compositing managers leave the windows of other desktops mapped.
bool FullScreenWatch::isOnShownDesktop(xcb_window_t window) const {
  constexpr std::uint32_t everyDesktop = 0xffffffffU;
  const auto own = numberProperty(connection_, window, connection_.atom(Atom::netWmDesktop));
  if (!own || *own == everyDesktop) return true;
  const auto shown =
      numberProperty(connection_, connection_.root(), connection_.atom(Atom::netCurrentDesktop));
  return !shown || *shown == *own;
}

// A window with an alpha channel tells in a property where it is opaque all the same.
std::vector<PixelRect> FullScreenWatch::opaqueParts(xcb_window_t window) const {
  constexpr std::uint32_t full = 0xffffffffU;
  const auto onRoot = placeOnRoot(connection_, window);
  const auto opacity = connection_.atom(Atom::netWmWindowOpacity);
  if (onRoot.isEmpty()) return {};
  if (numberProperty(connection_, window, opacity).value_or(full) != full) return {};
  if (!hasAlphaChannel(connection_, window)) return {onRoot};
  const auto numbers =
      numbersProperty(connection_, window, connection_.atom(Atom::netWmOpaqueRegion));
  std::vector<PixelRect> parts;
  for (std::size_t i = 0; i + 4 <= numbers.size(); i += 4) {
    const auto number = [&](std::size_t offset) { return static_cast<int>(numbers[i + offset]); };
    const PixelRect part{onRoot.x + number(0), onRoot.y + number(1), number(2), number(3)};
    parts.push_back(intersectionOf(part, onRoot));
  }
  return parts;
}

}  // namespace orvane::host::x11
