#include "linux/process/helper_program.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>

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

void arrangeFiles(const std::vector<int>& files, posix_spawn_file_actions_t& actions) {
  int number = 0;
  for (const int file : files) {
    if (file < 0) {
      posix_spawn_file_actions_addopen(&actions, number, "/dev/null", O_RDWR, 0);
    } else {
      posix_spawn_file_actions_adddup2(&actions, file, number);
    }
    ++number;
  }
  // Libraries may hold files that are not closed on exec.
  posix_spawn_file_actions_addclosefrom_np(&actions, number);
}

// Nothing of our signal handling may reach the program: no mask, no ignored SIGPIPE.
void resetSignals(posix_spawnattr_t& attributes) {
  sigset_t none, all;
  sigemptyset(&none);
  sigfillset(&all);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setsigdefault(&attributes, &all);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (auto& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

StartedHelper startHelper(const HelperStart& start) {
  FileActions files;
  arrangeFiles(start.files, files.actions);
  Attributes attributes;
  resetSignals(attributes.attributes);
  std::string name = start.path;
  std::array<char*, 2> arguments{name.data(), nullptr};
  auto variables = start.environment;
  StartedHelper started;
  started.error =
      posix_spawn(&started.process, start.path.c_str(), &files.actions, &attributes.attributes,
                  arguments.data(), pointersTo(variables).data());
  return started;
}

void endHelper(pid_t process) {
  kill(process, SIGKILL);
  while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) continue;
}

}  // namespace orvane::host
