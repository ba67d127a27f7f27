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

bool isNamed(const host::Environment& environment, const char* variable) {
  return !environment(variable).value_or("").empty();
}

}  // namespace

ReturningDesktop::Opened openDesktop(const host::Environment& environment, const Stage& stage,
                                     const ReturningDesktop::Attempt& attempt) {
  std::vector<std::string> failures;
#ifdef ORVANE_WAYLAND
  if (isNamed(environment, "WAYLAND_DISPLAY")) {
    auto desktop =
        host::makeWaylandDesktop({stage.mainActor, stage.schedule, stage.notifications,
                                  stage.measurer, stage.painter, attempt.onLost, attempt.patience});
    if (desktop.server) return {std::move(desktop.server), {}};
    failures.push_back(desktop.failure);
  }
#endif
#ifdef ORVANE_X11
  if (isNamed(environment, "DISPLAY")) {
    auto desktop =
        host::makeX11Desktop({stage.mainActor, stage.schedule, stage.notifications, stage.measurer,
                              stage.painter, attempt.onLost, attempt.patience});
    if (desktop.server) return {std::move(desktop.server), {}};
    failures.push_back(desktop.failure);
  }
#endif
  if (failures.empty()) failures.emplace_back(kNothingNamed);
  return {nullptr, std::move(failures)};
}

}  // namespace orvane
