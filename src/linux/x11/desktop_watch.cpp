#include "linux/x11/desktop_watch.h"

#include <xcb/xfixes.h>

#include <algorithm>

#include "linux/x11/properties.h"
#include "linux/xcb/answers.h"

namespace orvane::host::x11 {

namespace {

bool hasOwner(const Connection& connection, Atom selection) {
  const auto reply = xcb::answerTo<xcb_get_selection_owner_reply_t>(
      connection.handle(),
      xcb_get_selection_owner(connection.handle(), connection.atom(selection)));
  return reply && reply->owner != XCB_NONE;
}

// The window that names itself as the manager's; what a manager that crashed left behind on the
// root does not count.
xcb_window_t managerWindow(const Connection& connection) {
  const auto name = connection.atom(Atom::netSupportingWmCheck);
  const auto named = numberProperty(connection, connection.root(), name).value_or(XCB_NONE);
  if (named == XCB_NONE) return XCB_NONE;
  return numberProperty(connection, named, name) == named ? named : XCB_NONE;
}

}  // namespace

DesktopWatch::DesktopWatch(Connection& connection, MainActor& actor, ClientStack& stack)
    : connection_(connection), stack_(stack), settling_(actor, quiet, [this] { refresh(); }) {
  watch();
  kind_ = query();
}

void DesktopWatch::watch() {
  constexpr std::uint32_t owners = XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                   XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                   XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE;
  for (const auto selection : {Atom::compositingManager, Atom::windowManager}) {
    xcb_xfixes_select_selection_input(connection_.handle(), connection_.root(),
                                      connection_.atom(selection), owners);
  }
  events_ = connection_.events().subscribe([this](const xcb_generic_event_t& event) {
    if (concernsManagers(event)) settling_.signal();
  });
  stackChanges_ = stack_.changed().subscribe([this] {
    if (stack_.hasDesktopWindow() != kind_.hasDesktopWindow) settling_.signal();
  });
}

bool DesktopWatch::concernsManagers(const xcb_generic_event_t& event) const {
  const int type = typeOf(event);
  if (type == connection_.xfixesEvents() + XCB_XFIXES_SELECTION_NOTIFY) return true;
  if (type != XCB_PROPERTY_NOTIFY) return false;
  const auto& property = as<xcb_property_notify_event_t>(event);
  return property.window == connection_.root() &&
         (property.atom == connection_.atom(Atom::netSupportingWmCheck) ||
          property.atom == connection_.atom(Atom::kdeBlurBehindRegion));
}

DesktopKind DesktopWatch::query() const {
  DesktopKind kind;
  kind.managerWindow = managerWindow(connection_);
  if (kind.managerWindow != XCB_NONE) {
    // A manager without a name is still one.
    kind.managerName =
        bytesProperty(connection_, kind.managerWindow, connection_.atom(Atom::netWmName))
            .value_or("unnamed");
    const auto supported =
        numbersProperty(connection_, connection_.root(), connection_.atom(Atom::netSupported));
    kind.restacksOnRequest = std::find(supported.begin(), supported.end(),
                                       connection_.atom(Atom::netRestackWindow)) != supported.end();
  }
  kind.isCompositing = hasOwner(connection_, Atom::compositingManager);
  // KWin keeps this property on the root while it blurs, and windows one of the same name.
  kind.blursBehind =
      kind.isCompositing &&
      bytesProperty(connection_, connection_.root(), connection_.atom(Atom::kdeBlurBehindRegion))
          .has_value();
  kind.hasDesktopWindow = stack_.hasDesktopWindow();
  return kind;
}

void DesktopWatch::refresh() {
  if (connection_.isLost()) return;
  auto next = query();
  if (next == kind_) return;
  kind_ = std::move(next);
  changed_.send();
}

}  // namespace orvane::host::x11
