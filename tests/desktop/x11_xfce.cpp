#include "x11_xfce.h"

#include <algorithm>

#include "x11_probe_board.h"

namespace orvane::desktop_test {

OnXfce::OnXfce() {
  session_.startWindowManager(GetParam());
  session_.startDesktop();
  before_ = observer_.grab();
}

bool OnXfce::opensDesktopMenu(int x, int y, Milliseconds limit) {
  const auto menus = [&] {
    const auto all = observer_.windowsOf("xfdesktop");
    return std::count_if(all.begin(), all.end(), [](const auto& window) {
      return window.isViewable && window.isUnmanaged && window.onRoot.width > 100;
    });
  };
  observer_.click(x, y, 3);
  const bool opened = eventually([&] { return menus() > 0; }, limit);
  if (opened) {
    observer_.pressEscape();
    eventually([&] { return menus() == 0; });
  }
  return opened;
}

std::vector<std::ptrdiff_t> OnXfce::order(xcb_window_t ordinary) const {
  const auto tops = observer_.topLevels();
  const auto all = observer_.windows();
  const auto placeOf = [&](xcb_window_t id) {
    const auto window =
        std::find_if(all.begin(), all.end(), [&](const auto& seen) { return seen.id == id; });
    if (window == all.end()) return std::ptrdiff_t{-1};
    return std::find(tops.begin(), tops.end(), window->topLevel) - tops.begin();
  };
  const auto boards = Probe::boards(observer_);
  const auto desktop = observer_.find("xfdesktop", "Desktop");
  if (boards.empty() || !desktop) return {};
  const std::vector places = {placeOf(desktop->id), placeOf(boards[0].id), placeOf(ordinary)};
  return std::count(places.begin(), places.end(), -1) > 0 ? std::vector<std::ptrdiff_t>() : places;
}

bool OnXfce::standsBetween(xcb_window_t ordinary) const {
  const auto places = order(ordinary);
  return places.size() == 3 && places[0] < places[1] && places[1] < places[2];
}

}  // namespace orvane::desktop_test
