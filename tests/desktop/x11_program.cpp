#include "x11_program.h"

#include <ctime>
#include <fstream>

#include "support/test_paths.h"
#include "x11_probe_board.h"

namespace orvane::desktop_test {

namespace {

std::string inUtc(long long seconds) {
  const auto time = static_cast<std::time_t>(seconds);
  std::tm parts{};
  gmtime_r(&time, &parts);
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y%m%dT%H%M%SZ", &parts);
  return text.data();
}

}  // namespace

Program::Program(const Session& session)
    : calendar_(std::filesystem::path(session.environment().at("XDG_DATA_HOME")) /
                "orvane/calendars/plans") {
  std::filesystem::create_directories(calendar_);
  const auto now = static_cast<long long>(wallClock());
  deadline_ = now - now % 60 + 30 * 60;
  writeEvent("Choir practice", deadline_);
  process_ = session.start({builtProgram("orvane")});
}

void Program::addEvent(const std::string& title) { writeEvent(title, deadline_ + 60); }

void Program::writeEvent(const std::string& title, long long start) {
  std::ofstream file(calendar_ / (title + ".ics"));
  file << "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//The Orvane developers//Tests//EN\r\n"
       << "BEGIN:VEVENT\r\nUID:" << title
       << "\r\nDTSTAMP:20260101T000000Z\r\nDTSTART:" << inUtc(start)
       << "\r\nDTEND:" << inUtc(start + 600) << "\r\nSUMMARY:" << title
       << "\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
}

std::optional<SeenWindow> Program::waitForBoard(const Observer& observer, const Picture& before) {
  const auto isDrawn = [&] {
    const auto boards = Probe::boards(observer);
    if (boards.size() != 1) return false;
    const auto now = observer.grab();
    const int x = boards[0].onRoot.x + onACard.x;
    return now.at(x, onACard.y) != before.at(x, onACard.y);
  };
  if (!eventually(isDrawn)) return std::nullopt;
  return Probe::boards(observer).front();
}

int differences(const Picture& before, const Picture& now) {
  if (before.pixels.size() != now.pixels.size()) return before.width * before.height;
  int count = 0;
  for (int y = 0; y < now.height; ++y) {
    for (int x = 0; x < now.width; ++x) count += before.at(x, y) != now.at(x, y) ? 1 : 0;
  }
  return count;
}

}  // namespace orvane::desktop_test
