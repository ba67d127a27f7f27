#include "linux/calendars/reader_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

#include "linux/process/helper_program.h"

namespace orvane::host {
namespace {

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
  const auto started = startHelper({program, {input[1], output[1], -1}, {"LC_ALL=C.UTF-8"}});
  close(input[1]);
  close(output[1]);
  if (started.error != 0) {
    close(input[0]);
    close(output[0]);
    return std::nullopt;
  }
  makeNonBlocking(input[0]);
  makeNonBlocking(output[0]);
  return ReaderProcess(started.process, input[0], output[0]);
}

ReaderProcess::ReaderProcess(ReaderProcess&& other) noexcept
    : process_(std::exchange(other.process_, 0)),
      input_(std::exchange(other.input_, -1)),
      output_(std::exchange(other.output_, -1)) {}

ReaderProcess::~ReaderProcess() {
  closeInput();
  if (output_ >= 0) close(output_);
  if (process_ != 0) endHelper(process_);
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
