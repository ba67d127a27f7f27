#include "app/main_desktop.h"

#include <string>
#include <utility>
#include <vector>

#ifdef ORVANE_WAYLAND
#include "linux/wayland/wayland_desktop.h"
#endif
#ifdef ORVANE_X11
#include "linux/x11/x11_desktop.h"
#endif

namespace orvane {
namespace {

#if defined(ORVANE_WAYLAND) && defined(ORVANE_X11)
constexpr const char* kNothingNamed =
    "there is no desktop to show the dashboard on: neither WAYLAND_DISPLAY nor DISPLAY is set";
#elif defined(ORVANE_WAYLAND)
constexpr const char* kNothingNamed =
    "there is no desktop to show the dashboard on: WAYLAND_DISPLAY is not set";
#else
constexpr const char* kNothingNamed =
    "there is no desktop to show the dashboard on: DISPLAY is not set";
#endif

// Of a host's own kind.
template <class Desktop>
ReturningDesktop::Opened opened(Desktop desktop) {
  if (desktop.server) return {std::move(desktop.server), {}};
  return {nullptr, {std::move(desktop.failure)}};
}

bool isNamed(const host::Environment& environment, const char* variable) {
  return !environment(variable).value_or("").empty();
}

}  // namespace

DesktopKinds desktopKinds(const host::Environment& environment, const Stage& stage) {
  std::vector<DesktopKinds::Kind> kinds;
  const auto add = [&](const char* variable, auto open) {
    kinds.push_back({[environment, variable] { return isNamed(environment, variable); }, open});
  };
#ifdef ORVANE_WAYLAND
  add("WAYLAND_DISPLAY", [stage](const ReturningDesktop::Attempt& attempt) {
    return opened(host::makeWaylandDesktop({stage.mainActor, stage.schedule, stage.notifications,
                                            stage.measurer, stage.painter, attempt.onLost,
                                            attempt.patience, attempt.isInVain}));
  });
#endif
#ifdef ORVANE_X11
  add("DISPLAY", [stage](const ReturningDesktop::Attempt& attempt) {
    return opened(host::makeX11Desktop({stage.mainActor, stage.schedule, stage.notifications,
                                        stage.measurer, stage.painter, attempt.onLost,
                                        attempt.patience, attempt.isInVain, &stage.session}));
  });
#endif
  return {std::move(kinds), kNothingNamed};
}

}  // namespace orvane
