#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orvane {

// What a start of the program asks for besides running it.
struct CommandLine {
  // What to print, and where to: the standard output, or the standard error of a refused start.
  std::string text;
  int status = 0;
  friend bool operator==(const CommandLine&, const CommandLine&) = default;
};

// Nothing when the program is simply to run; otherwise what to print before ending with `status`.
// The program is set up in its settings and takes no arguments but --help and --version.
[[nodiscard]] std::optional<CommandLine> answerTo(const std::vector<std::string>& arguments,
                                                  const std::string& version);

}  // namespace orvane
