#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <string>
#include <vector>

#include "snapshot.h"
#include "snapshot_options.h"

namespace {

using namespace orvane::tools;

// It is built beside this program.
std::string readerPath() {
  std::error_code unknown;
  const auto self = std::filesystem::read_symlink("/proc/self/exe", unknown);
  return (self.parent_path() / "orvane-reader").string();
}

// One line, whatever the words were that it repeats.
int report(const Outcome& outcome) {
  auto line = outcome.message;
  for (char& character : line) {
    if (character >= 0 && character < ' ') character = '?';
  }
  if (!line.empty()) std::fprintf(stderr, "orvane-snapshot: %s\n", line.c_str());
  return outcome.status;
}

}  // namespace

int main(int count, char** arguments) {
  std::signal(SIGPIPE, SIG_IGN);
  // The font library keeps its own notes there; a snapshot leaves nothing behind.
  setenv("XDG_CACHE_HOME", "/dev/null/cache", 1);
  const auto parsed = parseArguments(std::vector<std::string>(arguments + 1, arguments + count));
  if (std::holds_alternative<HelpRequested>(parsed)) {
    std::fputs(usage, stdout);
    return 0;
  }
  if (const auto* error = std::get_if<ArgumentError>(&parsed)) {
    return report({wrongArgument, error->message});
  }
  try {
    return report(takeSnapshot(std::get<SnapshotOptions>(parsed), readerPath()));
  } catch (const std::bad_alloc&) {
    return report({wrongArgument, "there is not enough memory for so large a picture"});
  }
}
