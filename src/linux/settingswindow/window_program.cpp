#include "linux/settingswindow/window_program.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>
#include <utility>
#include <vector>

#include "linux/process/helper_program.h"
#include "linux/settingswindow/wire/messages.h"

namespace orvane::host {
namespace {

// Tokens in our environment are from the board's own start, which was long ago.
bool isStartupToken(std::string_view variable) {
  return variable.starts_with("XDG_ACTIVATION_TOKEN=") ||
         variable.starts_with("DESKTOP_STARTUP_ID=");
}

std::vector<std::string> environmentForWindows() {
  std::vector<std::string> variables;
  for (char** variable = environ; variable && *variable; ++variable) {
    if (!isStartupToken(*variable)) variables.emplace_back(*variable);
  }
  return variables;
}

}  // namespace

WindowProgram::WindowProgram(pid_t process, Ended ended)
    : process_(process), ended_(std::move(ended)) {
  const GChildWatchFunc reaped = [](GPid, gint status, gpointer data) {
    auto& self = *static_cast<WindowProgram*>(data);
    self.watch_ = 0;
    self.process_ = 0;
    const auto tell = std::exchange(self.ended_, nullptr);
    if (tell) tell(status);
  };
  watch_ = g_child_watch_add(process_, reaped, this);
}

WindowProgram::~WindowProgram() {
  if (watch_ != 0) g_source_remove(watch_);
  if (process_ != 0) endHelper(process_);
}

StartedProgram startWindowProgram(const std::string& path, WindowProgram::Ended ended) {
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    return {nullptr, {}, errno};
  }
  FileDescriptor ours(ends[0]);
  const FileDescriptor theirs(ends[1]);
  fcntl(ours.get(), F_SETFL, fcntl(ours.get(), F_GETFL) | O_NONBLOCK);
  static_assert(formwire::kSocket == STDERR_FILENO + 1);
  const auto started = startHelper(
      {path, {-1, STDERR_FILENO, STDERR_FILENO, theirs.get()}, environmentForWindows()});
  if (started.error != 0) return {nullptr, {}, started.error};
  return {std::make_unique<WindowProgram>(started.process, std::move(ended)), std::move(ours), 0};
}

}  // namespace orvane::host
