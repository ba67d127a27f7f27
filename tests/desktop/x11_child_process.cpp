#include "x11_child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>

extern char** environ;

namespace orvane::desktop_test {

namespace {

using Clock = std::chrono::steady_clock;

void restABit() { poll(nullptr, 0, 10); }

std::vector<std::string> merged(const Environment& changes) {
  std::vector<std::string> result;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string text = *entry;
    if (!changes.contains(text.substr(0, text.find('=')))) result.push_back(text);
  }
  for (const auto& [name, value] : changes) {
    if (!value.empty()) result.push_back(name + "=" + value);
  }
  return result;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (auto& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

bool eventually(const std::function<bool()>& condition, Milliseconds limit) {
  const auto end = Clock::now() + limit;
  while (!condition()) {
    if (Clock::now() > end) return condition();
    restABit();
  }
  return true;
}

bool throughout(Milliseconds span, const std::function<bool()>& condition) {
  return !eventually([&] { return !condition(); }, span);
}

ChildProcess::ChildProcess(std::vector<std::string> command, const Environment& environment) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  pipe_ = ends[0];
  fcntl(pipe_, F_SETFL, O_NONBLOCK);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], 1);
  posix_spawn_file_actions_adddup2(&actions, ends[1], 2);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
  auto variables = merged(environment);
  const int error = posix_spawnp(&id_, command[0].c_str(), &actions, &attributes,
                                 pointersTo(command).data(), pointersTo(variables).data());
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  if (error != 0) {
    close(pipe_);
    throw std::runtime_error("cannot start " + command[0]);
  }
}

ChildProcess::~ChildProcess() {
  if (!status()) {
    signal(SIGTERM);
    waitForEnd(Milliseconds(3000));
  }
  kill(-id_, SIGKILL);
  if (!status_) waitpid(id_, nullptr, 0);
  close(pipe_);
}

void ChildProcess::signal(int number) const { kill(id_, number); }

std::optional<int> ChildProcess::status() {
  int raw = 0;
  if (!status_ && waitpid(id_, &raw, WNOHANG) == id_) {
    status_ = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
  }
  return status_;
}

std::optional<int> ChildProcess::waitForEnd(Milliseconds limit) {
  eventually([this] { return status().has_value(); }, limit);
  return status_;
}

const std::string& ChildProcess::output() {
  std::array<char, 4096> chunk{};
  for (ssize_t count = 0; (count = read(pipe_, chunk.data(), chunk.size())) > 0;) {
    output_.append(chunk.data(), static_cast<std::size_t>(count));
  }
  return output_;
}

std::string ChildProcess::firstLine() {
  eventually([this] { return output().find('\n') != std::string::npos || status(); });
  return output().substr(0, output().find('\n'));
}

}  // namespace orvane::desktop_test
