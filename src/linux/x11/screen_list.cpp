#include "linux/x11/screen_list.h"

#include <xcb/randr.h>

#include "linux/x11/display_scale.h"
#include "linux/x11/properties.h"

namespace orvane::host::x11 {

ScreenList::ScreenList(Connection& connection, MainActor& actor, NotificationCenter& notifications)
    : connection_(connection),
      notifications_(notifications),
      settling_(actor, quiet, [this] { refresh(); }) {
  watch();
  now_ = query();
}

std::optional<NSScreen> ScreenList::mainScreen() const {
  if (!now_.main) return std::nullopt;
  return now_.screens[*now_.main];
}

// The root window's own events are selected by the desktop, once for all who look at them.
void ScreenList::watch() {
  if (connection_.randrEvents() >= 0) {
    xcb_randr_select_input(connection_.handle(), connection_.root(),
                           XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                               XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
  }
  events_ = connection_.events().subscribe([this](const xcb_generic_event_t& event) {
    if (concernsScreens(event)) settling_.signal();
  });
}

bool ScreenList::concernsScreens(const xcb_generic_event_t& event) const {
  const int type = typeOf(event);
  if (connection_.randrEvents() >= 0) {
    const int first = connection_.randrEvents();
    if (type == first + XCB_RANDR_SCREEN_CHANGE_NOTIFY || type == first + XCB_RANDR_NOTIFY) {
      return true;
    }
  }
  if (type == XCB_CONFIGURE_NOTIFY) {
    return as<xcb_configure_notify_event_t>(event).window == connection_.root();
  }
  if (type != XCB_PROPERTY_NOTIFY) return false;
  const auto& property = as<xcb_property_notify_event_t>(event);
  return property.window == connection_.root() &&
         (property.atom == XCB_ATOM_RESOURCE_MANAGER ||
          property.atom == connection_.atom(Atom::netWorkarea) ||
          property.atom == connection_.atom(Atom::netCurrentDesktop));
}

ScreenList::State ScreenList::query() const {
  const auto resources =
      bytesProperty(connection_, connection_.root(), XCB_ATOM_RESOURCE_MANAGER).value_or("");
  const auto monitors = queryMonitors(connection_);
  const auto area = workArea();
  State state{displayScale(resources), {}, mainMonitor(monitors)};
  for (const auto& monitor : monitors) {
    state.screens.push_back(screenOf(monitor, state.scale, area));
  }
  return state;
}

// One rectangle for each desktop; older window managers give one for all.
std::optional<PixelRect> ScreenList::workArea() const {
  const auto areas =
      numbersProperty(connection_, connection_.root(), connection_.atom(Atom::netWorkarea));
  if (areas.size() < 4) return std::nullopt;
  const auto desktop =
      numberProperty(connection_, connection_.root(), connection_.atom(Atom::netCurrentDesktop));
  std::size_t at = 4 * static_cast<std::size_t>(desktop.value_or(0));
  if (at + 4 > areas.size()) at = 0;
  const auto number = [&](std::size_t offset) { return static_cast<int>(areas[at + offset]); };
  return PixelRect{number(0), number(1), number(2), number(3)};
}

void ScreenList::refresh() {
  if (connection_.isLost()) return;
  auto next = query();
  if (next == now_) return;
  now_ = std::move(next);
  notifications_.post(NSApplicationDidChangeScreenParametersNotification);
  changed_.send();
}

}  // namespace orvane::host::x11
