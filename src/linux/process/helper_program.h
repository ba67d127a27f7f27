// process/ is what the adapters that have helper programs share: how one is started, so that it
// holds nothing of ours but what it is given, and how it is ended.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace orvane::host {

struct HelperStart {
  std::string path;
  // Our descriptors that become its 0, 1, 2 …; it holds no others. Negative: /dev/null. One that is
  // among the standard ones may only stand behind all that become a lower number.
  std::vector<int> files;
  std::vector<std::string> environment;  // NAME=value, and nothing else
};

struct StartedHelper {
  pid_t process = 0;
  int error = 0;  // why it could not be started, as errno tells it; else 0
};

// The program begins with no signal blocked or ignored.
[[nodiscard]] StartedHelper startHelper(const HelperStart& start);

// Kills a child and leaves no zombie.
void endHelper(pid_t process);

}  // namespace orvane::host
