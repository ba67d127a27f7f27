#include "x11_probe_board.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "support/test_paths.h"
#include "x11_block_painter.h"

namespace orvane::desktop_test {

namespace {

std::optional<int> readDigit(const Picture& picture, const PixelRect& cell) {
  std::array<bool, 7> lit{};
  const auto strokes = strokesIn(cell);
  for (std::size_t i = 0; i < strokes.size(); ++i) {
    // A point of the stroke that no other stroke shares.
    const int x = strokes[i].x + strokes[i].width / 2;
    const int y = strokes[i].y + strokes[i].height / 2;
    if (x >= picture.width || y >= picture.height) return std::nullopt;
    lit[i] = picture.at(x, y) == 0xffffff;
  }
  const auto* found = std::find(digitStrokes.begin(), digitStrokes.end(), lit);
  if (found == digitStrokes.end()) return std::nullopt;
  return static_cast<int>(found - digitStrokes.begin());
}

bool contains(const PixelRect& rect, int x, int y) {
  return x >= rect.x && y >= rect.y && x < rect.x + rect.width && y < rect.y + rect.height;
}

}  // namespace

std::string Probe::path() { return builtProgram("tests/x11_probe"); }

Probe::Probe(const Session& session, std::vector<std::string> options) {
  options.insert(options.begin(), path());
  process_ = session.start(std::move(options));
}

int Probe::timesSaid(const std::string& line) {
  const auto& output = process_->output();
  int count = 0;
  for (auto at = output.find(line + '\n'); at != std::string::npos;
       at = output.find(line + '\n', at + 1)) {
    ++count;
  }
  return count;
}

std::vector<SeenWindow> Probe::boards(const Observer& observer) {
  auto windows = observer.windowsOf("org.orvane.Orvane");
  std::erase_if(windows, [](const auto& window) { return !window.isViewable; });
  std::sort(windows.begin(), windows.end(),
            [](const auto& a, const auto& b) { return a.onRoot.x < b.onRoot.x; });
  return windows;
}

std::vector<SeenWindow> Probe::waitForBoards(const Observer& observer, std::size_t count) {
  eventually([&] { return boards(observer).size() == count; });
  return boards(observer);
}

std::optional<int> readDigits(const Picture& picture, PixelPoint corner, int scale) {
  int number = 0;
  const int width = digitsArea.width / digitCount * scale;
  for (int i = 0; i < digitCount; ++i) {
    const auto digit =
        readDigit(picture, {corner.x + digitsArea.x * scale + i * width,
                            corner.y + digitsArea.y * scale, width, digitsArea.height * scale});
    if (!digit) return std::nullopt;
    number = number * 10 + *digit;
  }
  return number;
}

bool showsNow(const Picture& picture, PixelPoint corner, int scale) {
  const auto number = readDigits(picture, corner, scale);
  const auto now = static_cast<long long>(wallClock());
  return number && (*number == now % 100000 || *number == (now - 1) % 100000);
}

bool alike(std::uint32_t a, std::uint32_t b) {
  constexpr int tolerance = 2;
  for (const unsigned shift : {0U, 8U, 16U}) {
    const int difference =
        static_cast<int>(a >> shift & 0xffU) - static_cast<int>(b >> shift & 0xffU);
    if (std::abs(difference) > tolerance) return false;
  }
  return true;
}

std::uint32_t mixedWithBoard(std::uint32_t beneath, bool isRed) {
  const std::array<double, 3> board = isRed ? std::array{0.6, 0.1, 0.1} : std::array{0.0, 0.0, 0.6};
  std::uint32_t mixed = 0;
  for (unsigned channel = 0; channel < 3; ++channel) {
    const unsigned shift = 16 - 8 * channel;
    const double under = beneath >> shift & 0xffU;
    mixed |= static_cast<std::uint32_t>(std::lround((under + board[channel] * 255) / 2)) << shift;
  }
  return mixed;
}

bool boardLiesOver(const Picture& before, const Picture& now, bool isRed) {
  if (before.pixels.size() != now.pixels.size() || now.pixels.empty()) return false;
  for (int y = boardArea.y; y < boardArea.y + boardArea.height; ++y) {
    for (int x = boardArea.x; x < boardArea.x + boardArea.width; ++x) {
      if (contains(digitsArea, x, y)) continue;
      if (!alike(now.at(x, y), mixedWithBoard(before.at(x, y), isRed))) return false;
    }
  }
  return true;
}

bool restIsUntouched(const Picture& before, const Picture& now) {
  if (before.pixels.size() != now.pixels.size()) return false;
  for (int y = 0; y < before.height; ++y) {
    for (int x = 0; x < before.width; ++x) {
      if (!contains(boardArea, x, y) && before.at(x, y) != now.at(x, y)) return false;
    }
  }
  return true;
}

}  // namespace orvane::desktop_test
