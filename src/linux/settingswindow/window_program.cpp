#include "linux/settingswindow/window_program.h"

#include <fcntl.h>
#include <glib.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>
#include <utility>
#include <vector>

#include "linux/settingswindow/wire/messages.h"

namespace orvane::host {
namespace {

struct FileActions {
  FileActions() { posix_spawn_file_actions_init(&actions); }
  FileActions(const FileActions&) = delete;
  ~FileActions() { posix_spawn_file_actions_destroy(&actions); }
  posix_spawn_file_actions_t actions{};
};

struct Attributes {
  Attributes() { posix_spawnattr_init(&attributes); }
  Attributes(const Attributes&) = delete;
  ~Attributes() { posix_spawnattr_destroy(&attributes); }
  posix_spawnattr_t attributes{};
};

// Nothing of our signal handling may reach the program: no mask, no ignored SIGPIPE.
void resetSignals(posix_spawnattr_t& attributes) {
  sigset_t none, all;
  sigemptyset(&none);
  sigfillset(&all);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setsigdefault(&attributes, &all);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
}

void arrangeFiles(posix_spawn_file_actions_t& actions, int socket) {
  posix_spawn_file_actions_adddup2(&actions, socket, formwire::kSocket);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, STDERR_FILENO, STDOUT_FILENO);
  // Libraries may hold files that are not closed on exec.
  posix_spawn_file_actions_addclosefrom_np(&actions, formwire::kSocket + 1);
}

// Tokens in our environment are from the board's own start, which was long ago.
bool isStartupToken(std::string_view variable) {
  return variable.starts_with("XDG_ACTIVATION_TOKEN=") ||
         variable.starts_with("DESKTOP_STARTUP_ID=");
}

std::vector<char*> environmentForWindows() {
  std::vector<char*> variables;
  for (char** variable = environ; variable && *variable; ++variable) {
    if (!isStartupToken(*variable)) variables.push_back(*variable);
  }
  variables.push_back(nullptr);
  return variables;
}

// Answers an error as errno tells it, or 0.
int spawn(const std::string& path, int socket, pid_t& process) {
  FileActions files;
  arrangeFiles(files.actions, socket);
  Attributes attributes;
  resetSignals(attributes.attributes);
  std::string name = path;
  std::array<char*, 2> arguments{name.data(), nullptr};
  return posix_spawn(&process, path.c_str(), &files.actions, &attributes.attributes,
                     arguments.data(), environmentForWindows().data());
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
  if (process_ == 0) return;
  kill(process_, SIGKILL);
  while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) continue;
}

StartedProgram startWindowProgram(const std::string& path, WindowProgram::Ended ended) {
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    return {nullptr, {}, errno};
  }
  FileDescriptor ours(ends[0]);
  const FileDescriptor theirs(ends[1]);
  fcntl(ours.get(), F_SETFL, fcntl(ours.get(), F_GETFL) | O_NONBLOCK);
  pid_t process = 0;
  if (const int error = spawn(path, theirs.get(), process)) return {nullptr, {}, error};
  return {std::make_unique<WindowProgram>(process, std::move(ended)), std::move(ours), 0};
}

}  // namespace orvane::host
