#pragma once

#include <chrono>
#include <functional>
#include <string>

struct wl_display;

namespace orvane::host::wayland {

using Deadline = std::chrono::steady_clock::time_point;

// Opens the connection that the environment names, as wl_display_connect() does, but fails where
// the compositor has no room left for another client instead of waiting for it. Null, with errno
// set, where there is none.
[[nodiscard]] wl_display* connectToCompositor();

// For how long a compositor is waited for.
struct Wait {
  Deadline deadline;
  // Asked twice a second meanwhile: whether there is no more use in it. May be empty.
  std::function<bool()> isInVain = {};
};

// Sends what is waiting, and handles events until the compositor has answered all of it. Answers
// nothing, or why it was not waited for any longer: a signal counts, too, since what it asks for is
// only done by the loop.
[[nodiscard]] std::string waitForAnswers(wl_display* display, const Wait& wait);

}  // namespace orvane::host::wayland
