#include "linux/calendars/reader_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

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

// Nothing of our signal handling may reach the reader: no mask, no ignored SIGPIPE.
void resetSignals(posix_spawnattr_t& attributes) {
  sigset_t none, all;
  sigemptyset(&none);
  sigfillset(&all);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setsigdefault(&attributes, &all);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
}

std::optional<pid_t> spawn(const std::string& program, int input, int output) {
  FileActions files;
  posix_spawn_file_actions_adddup2(&files.actions, input, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&files.actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&files.actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  // Libraries may hold files that are not closed on exec.
  posix_spawn_file_actions_addclosefrom_np(&files.actions, STDERR_FILENO + 1);
  Attributes attributes;
  resetSignals(attributes.attributes);

  std::string name = program;
  std::string locale = "LC_ALL=C.UTF-8";
  std::array<char*, 2> arguments{name.data(), nullptr};
  std::array<char*, 2> environment{locale.data(), nullptr};
  pid_t process = 0;
  const int error = posix_spawn(&process, program.c_str(), &files.actions, &attributes.attributes,
                                arguments.data(), environment.data());
  if (error != 0) return std::nullopt;
  return process;
}

// A socket rather than a pipe: writing to one whose reader died can be told not to raise SIGPIPE.
bool makeChannel(std::array<int, 2>& ends) {
  return socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0;
}

void closeBoth(const std::array<int, 2>& ends) {
  for (const int end : ends) {
    if (end >= 0) close(end);
  }
}

void makeNonBlocking(int file) { fcntl(file, F_SETFL, fcntl(file, F_GETFL) | O_NONBLOCK); }

}  // namespace

std::optional<ReaderProcess> ReaderProcess::start(const std::string& program) {
  std::array<int, 2> input{-1, -1};
  std::array<int, 2> output{-1, -1};
  if (!makeChannel(input) || pipe2(output.data(), O_CLOEXEC) != 0) {
    closeBoth(input);
    return std::nullopt;
  }
  const auto process = spawn(program, input[1], output[1]);
  close(input[1]);
  close(output[1]);
  if (!process) {
    close(input[0]);
    close(output[0]);
    return std::nullopt;
  }
  makeNonBlocking(input[0]);
  makeNonBlocking(output[0]);
  return ReaderProcess(*process, input[0], output[0]);
}

ReaderProcess::ReaderProcess(ReaderProcess&& other) noexcept
    : process_(std::exchange(other.process_, 0)),
      input_(std::exchange(other.input_, -1)),
      output_(std::exchange(other.output_, -1)) {}

ReaderProcess::~ReaderProcess() {
  closeInput();
  if (output_ >= 0) close(output_);
  if (process_ == 0) return;
  kill(process_, SIGKILL);
  while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) continue;
}

void ReaderProcess::closeInput() {
  if (input_ >= 0) close(std::exchange(input_, -1));
}

bool ReaderProcess::endedWell(std::chrono::milliseconds patience) {
  // By number: this C library's header declares pidfd_open() for C alone.
  const auto descriptor = static_cast<int>(syscall(SYS_pidfd_open, process_, 0));
  if (descriptor < 0) return false;
  pollfd ended{descriptor, POLLIN, 0};
  const int count = poll(&ended, 1, static_cast<int>(patience.count()));
  close(descriptor);
  if (count != 1) return false;
  int status = 0;
  while (waitpid(process_, &status, 0) < 0) {
    if (errno != EINTR) return false;
  }
  process_ = 0;
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace orvane::host
