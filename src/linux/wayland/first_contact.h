#pragma once

#include <chrono>
#include <string>

struct wl_display;

namespace orvane::host::wayland {

using Deadline = std::chrono::steady_clock::time_point;

// Opens the connection that the environment names, as wl_display_connect() does, but fails where
// the compositor has no room left for another client instead of waiting for it. Null, with errno
// set, where there is none.
[[nodiscard]] wl_display* connectToCompositor();

// Sends what is waiting, and handles events until the compositor has answered all of it. Answers
// nothing, or why it was not waited for any longer: a signal counts, too, since what it asks for is
// only done by the loop.
[[nodiscard]] std::string waitForAnswers(wl_display* display, Deadline deadline);

}  // namespace orvane::host::wayland
