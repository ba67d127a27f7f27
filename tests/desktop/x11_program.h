#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "x11_observer.h"
#include "x11_session.h"

namespace orvane::desktop_test {

// The program itself, running in a session with calendars of its own: one event is on, far enough
// away to be counted down to all the time.
class Program {
 public:
  explicit Program(const Session& session);

  [[nodiscard]] ChildProcess& process() { return *process_; }
  // When the event begins, in seconds since 1970; a whole minute.
  [[nodiscard]] long long deadline() const { return deadline_; }
  // Copies another event, of this day, into the calendar's folder.
  void addEvent(const std::string& title);

  // Its one window, once its cards are drawn; nothing when they do not come.
  static std::optional<SeenWindow> waitForBoard(const Observer& observer, const Picture& before);

 private:
  void writeEvent(const std::string& title, long long start);

  std::filesystem::path calendar_;
  long long deadline_ = 0;
  std::unique_ptr<ChildProcess> process_;
};

// Within the card of the next event on a screen of 1600×900, at scale 1.
inline constexpr PixelPoint onACard{250, 250};

// How many pixels differ.
int differences(const Picture& before, const Picture& now);

}  // namespace orvane::desktop_test
