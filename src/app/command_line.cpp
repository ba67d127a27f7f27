#include "app/command_line.h"

namespace orvane {
namespace {

constexpr const char* kHelp =
    "Usage: orvane [--help | --version]\n"
    "Shows the date, a countdown to the next deadline, today's events and the open reminders on "
    "the\n"
    "desktop background. It is set up in its settings and takes no other arguments.\n";

// An argument may hold anything; a line on a terminal must not.
std::string onOneLine(const std::string& argument) {
  std::string line;
  for (const char c : argument) line += static_cast<unsigned char>(c) < 0x20 || c == 0x7f ? '?' : c;
  return line;
}

}  // namespace

std::optional<CommandLine> answerTo(const std::vector<std::string>& arguments,
                                    const std::string& version) {
  if (arguments.empty()) return std::nullopt;
  if (arguments.size() == 1 && arguments[0] == "--help") return CommandLine{kHelp, 0};
  if (arguments.size() == 1 && arguments[0] == "--version")
    return CommandLine{"orvane " + version + "\n", 0};
  const bool known = arguments[0] == "--help" || arguments[0] == "--version";
  const std::string& refused = known ? arguments[1] : arguments[0];
  return CommandLine{"orvane: unknown argument '" + onOneLine(refused) +
                         "'; only --help and --version are known\n",
                     2};
}

}  // namespace orvane
