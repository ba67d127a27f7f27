// A reader for tests. It speaks to the program as the real one does and understands a plain format
// of its own instead of iCalendar, so that the tests of the store say what a file holds in a line:
//
//   BEGIN:VCALENDAR
//   NAME Work
//   EVENT uid|original start|title|start|end      times in seconds since 1970
//   TASK uid|title|priority
//   ZONE uid                                      an event titled with the request's zone and
//   window
//   DENSE uid                                     an event of the shown part of the window only
//   CRASH | HANG | BABBLE | LARGE                 what a bad file may do to a reader
//
// It notes the paths that it was asked for in the file "reads" beside itself.

#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "linux/wire/reader_messages.h"

namespace {

using namespace orvane;

std::vector<std::string> fields(const std::string& line) {
  std::vector<std::string> parts;
  std::stringstream stream(line.substr(line.find(' ') + 1));
  for (std::string part; std::getline(stream, part, '|');) parts.push_back(part);
  parts.resize(5);
  return parts;
}

void write(const std::string& bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    const auto count = ::write(STDOUT_FILENO, bytes.data() + done, bytes.size() - done);
    if (count <= 0) _exit(3);
    done += static_cast<std::size_t>(count);
  }
}

void understand(const std::string& line, const wire::ReadRequest& request,
                wire::FileAnswer& answer) {
  const auto part = fields(line);
  if (line.starts_with("NAME ")) {
    answer.calendarName = line.substr(5);
  } else if (line.starts_with("EVENT ")) {
    answer.holdsEvents = true;
    const double start = std::stod(part[3]);
    const double end = std::stod(part[4]);
    if (start < request.windowEnd && end > request.windowStart) {
      answer.events.push_back({part[0], part[1], part[2], start, end, false});
    }
  } else if (line.starts_with("TASK ")) {
    answer.holdsTasks = true;
    answer.tasks.push_back({part[0], part[1], std::nullopt, std::stol(part[2])});
  } else if (line.starts_with("ZONE ")) {
    answer.holdsEvents = true;
    const double start = request.windowStart;
    answer.events.push_back({part[0], "", request.localTimeZone, start, request.windowEnd, false});
  } else if (line.starts_with("DENSE ")) {
    answer.holdsEvents = answer.isForShownOnly = true;
    answer.events.push_back({part[0], "", part[0], request.shownStart, request.shownEnd, false});
  } else if (line == "CRASH") {
    std::raise(SIGKILL);
  } else if (line == "HANG") {
    while (true) pause();
  } else if (line == "BABBLE") {
    write(std::string(64, '\xff'));
  } else if (line == "LARGE") {
    answer.outcome = wire::ReadOutcome::tooLarge;
  }
}

wire::FileAnswer answerFor(const std::string& path, const wire::ReadRequest& request) {
  wire::FileAnswer answer;
  answer.path = path;
  std::ifstream file(path);
  if (!file) {
    answer.outcome = wire::ReadOutcome::unreadable;
    return answer;
  }
  std::string line;
  if (!std::getline(file, line) || line != "BEGIN:VCALENDAR") {
    answer.outcome = wire::ReadOutcome::notCalendar;
    return answer;
  }
  while (std::getline(file, line)) understand(line, request, answer);
  return answer;
}

std::string standardInput() {
  std::string bytes;
  char buffer[65536];
  for (ssize_t count = 0; (count = ::read(STDIN_FILENO, buffer, sizeof buffer)) > 0;) {
    bytes.append(buffer, static_cast<std::size_t>(count));
  }
  return bytes;
}

}  // namespace

int main(int, char** arguments) {
  const auto request = wire::decodeRequest(standardInput());
  if (!request) return 2;
  const std::string self = arguments[0];
  const auto folder = self.substr(0, self.find_last_of('/'));
  for (const auto& path : request->paths) {
    std::ofstream(folder + "/reads", std::ios::app) << path << "\n";
    write(encode(answerFor(path, *request)));
  }
  return 0;
}
