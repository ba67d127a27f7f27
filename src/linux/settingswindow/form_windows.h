// settingswindow/ shows the form of the settings in a program of its own, which it starts when the
// window is first wanted. The program that draws the board thus never loads a toolkit, and nothing
// that happens to the window happens to the board.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "foundation/main_actor.h"
#include "linux/settingswindow/preview_picture.h"
#include "platform/form_window.h"

namespace orvane::host {

struct FormWindowsOptions {
  // The program that shows a window; see wire/messages.h for what is asked of it.
  std::string programPath;
  // Tells the user why a window that was asked for cannot be seen.
  std::function<void(const std::string& title, const std::string& sentence)> tell;
  DrawPreview drawPreview;
  // What lets the window that is asked for now take the focus, and only this one; may be empty.
  std::function<std::string()> takeActivationToken = [] { return std::string(); };
};

// Each window runs in a program of its own from its first showing on, which ends half a minute
// after the window was closed, and at once with the window. What becomes of the program is one line
// on standard error and, where the window was never seen, told to the user; the next showing starts
// it anew, and the window is as it was left. The actor must outlive the windows, and main thread
// and main context are its.
[[nodiscard]] std::unique_ptr<FormWindowServer> makeFormWindows(FormWindowsOptions options,
                                                                MainActor& mainActor);

}  // namespace orvane::host
