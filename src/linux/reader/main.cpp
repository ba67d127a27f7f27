// Reads iCalendar files for the program that shows them: a request on standard input, an answer
// per file on standard output. It is short-lived, limited in what it may use, and may die of a
// file; whoever started it then knows by the answers which one that was.

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <optional>
#include <string>

#include "linux/reader/limits.h"
#include "linux/reader/reading_session.h"

namespace {

using orvane::wire::FileAnswer;

std::optional<std::string> readStandardInput() {
  std::string bytes;
  char piece[65536];
  while (bytes.size() <= orvane::wire::kMostMessageBytes) {
    const ssize_t count = read(STDIN_FILENO, piece, sizeof piece);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    if (count == 0) return bytes;
    bytes.append(piece, static_cast<std::size_t>(count));
  }
  return std::nullopt;
}

bool writeStandardOutput(const std::string& bytes) {
  std::size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t count = write(STDOUT_FILENO, bytes.data() + written, bytes.size() - written);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    written += static_cast<std::size_t>(count);
  }
  return true;
}

}  // namespace

int main() {
  // Whoever asked may be gone before everything is answered; that is no failure to shout about.
  std::signal(SIGPIPE, SIG_IGN);
  orvane::ical::limitProcess();
  const auto bytes = readStandardInput();
  const auto request = bytes ? orvane::wire::decodeRequest(*bytes) : std::nullopt;
  if (!request) return 2;
  bool isHeard = true;
  orvane::ical::readFiles(*request, orvane::ical::grantTimeOfAFile,
                          [&isHeard](const FileAnswer& answer) {
                            isHeard = writeStandardOutput(orvane::wire::encode(answer));
                            return isHeard;
                          });
  return isHeard ? 0 : 1;
}
