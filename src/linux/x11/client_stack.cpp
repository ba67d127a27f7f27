#include "linux/x11/client_stack.h"

#include <algorithm>

#include "linux/x11/properties.h"
#include "linux/xcb/answers.h"

namespace orvane::host::x11 {

ClientStack::ClientStack(Connection& connection, MainActor& actor)
    : connection_(connection), actor_(actor) {
  events_ = connection_.events().subscribe([this](const xcb_generic_event_t& event) {
    if (typeOf(event) != XCB_PROPERTY_NOTIFY) return;
    const auto& property = as<xcb_property_notify_event_t>(event);
    if (property.window != connection_.root() ||
        property.atom != connection_.atom(Atom::netClientListStacking)) {
      return;
    }
    turn_ = actor_.after(Duration::zero(), [this] { refresh(); });
  });
  refresh();
}

void ClientStack::refresh() {
  if (connection_.isLost()) return;
  auto stack = numbersProperty(connection_, connection_.root(),
                               connection_.atom(Atom::netClientListStacking));
  if (stack == bottomToTop_) return;
  std::map<xcb_window_t, bool> types;
  for (const auto window : stack) {
    // A window keeps its type while it is managed, so each is asked once.
    const auto known = isDesktop_.find(window);
    types[window] = known != isDesktop_.end() ? known->second : isOtherDesktop(window);
  }
  isDesktop_ = std::move(types);
  bottomToTop_ = std::move(stack);
  changed_.send();
}

bool ClientStack::isOtherDesktop(xcb_window_t window) const {
  if (connection_.isOurs(window)) return false;
  const auto types = numbersProperty(connection_, window, connection_.atom(Atom::netWmWindowType));
  const auto desktop = connection_.atom(Atom::netWmWindowTypeDesktop);
  return std::find(types.begin(), types.end(), desktop) != types.end();
}

bool ClientStack::hasDesktopWindow() const {
  return std::any_of(isDesktop_.begin(), isDesktop_.end(),
                     [](const auto& entry) { return entry.second; });
}

std::optional<xcb_window_t> ClientStack::desktopAbove(xcb_window_t window) const {
  const auto own = std::find(bottomToTop_.begin(), bottomToTop_.end(), window);
  if (own == bottomToTop_.end()) return std::nullopt;
  for (auto above = bottomToTop_.end(); above != own + 1;) {
    if (isDesktop_.at(*--above)) return *above;
  }
  return std::nullopt;
}

std::optional<xcb_window_t> ClientStack::findUnmanagedDesktop() const {
  const auto tree = xcb::answerTo<xcb_query_tree_reply_t>(
      connection_.handle(), xcb_query_tree(connection_.handle(), connection_.root()));
  if (!tree) return std::nullopt;
  const auto* children = xcb_query_tree_children(tree.get());
  for (int i = xcb_query_tree_children_length(tree.get()) - 1; i >= 0; --i) {
    if (isOtherDesktop(children[i])) return children[i];
  }
  return std::nullopt;
}

}  // namespace orvane::host::x11
