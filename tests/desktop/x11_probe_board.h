#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "x11_observer.h"
#include "x11_session.h"

namespace orvane::desktop_test {

// The small program around the real windows, running in a session.
class Probe {
 public:
  Probe(const Session& session, std::vector<std::string> options = {});

  [[nodiscard]] static std::string path();
  [[nodiscard]] ChildProcess& process() { return *process_; }
  // How often a line was printed.
  [[nodiscard]] int timesSaid(const std::string& line);
  // Its windows on the server that can be seen, from left to right.
  [[nodiscard]] static std::vector<SeenWindow> boards(const Observer& observer);
  // Waits until there are as many; answers what there is then.
  static std::vector<SeenWindow> waitForBoards(const Observer& observer, std::size_t count);

 private:
  std::unique_ptr<ChildProcess> process_;
};

// The board of the probe, from its screen's corner, in points.
inline constexpr PixelRect boardArea{40, 40, 220, 112};
inline constexpr PixelRect digitsArea{60, 60, 180, 72};
inline constexpr int digitCount = 5;

// The number that the board shows; nothing when that is no number.
std::optional<int> readDigits(const Picture& picture, PixelPoint screenCorner = {}, int scale = 1);
// Whether the number on the board is that of this moment, give or take a second of drawing.
bool showsNow(const Picture& picture, PixelPoint screenCorner = {}, int scale = 1);

// Whether two colours differ by no more than rounding.
bool alike(std::uint32_t a, std::uint32_t b);
// Half the board's colour over half of what is beneath, which is how the board's empty parts look.
std::uint32_t mixedWithBoard(std::uint32_t beneath, bool isRed = false);
// Whether the board's edge, where there are no digits, lies over `before` in `now`.
bool boardLiesOver(const Picture& before, const Picture& now, bool isRed = false);
// Whether all that is not board is the same in both.
bool restIsUntouched(const Picture& before, const Picture& now);

}  // namespace orvane::desktop_test
