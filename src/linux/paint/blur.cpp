#include "linux/paint/blur.h"

#include <cstddef>

namespace orvane::host {

namespace {

// One line of a picture: every `step`-th value from `values` on.
struct Line {
  std::uint8_t* values;
  int length;
  std::ptrdiff_t step;
};

// The mean of each value and its `reach` neighbours on both sides.
void boxBlur(const Line& line, int reach, std::vector<std::uint8_t>& before) {
  const int width = 2 * reach + 1;
  before.assign(static_cast<std::size_t>(line.length), 0);
  for (int i = 0; i < line.length; ++i) before[i] = line.values[i * line.step];
  int sum = 0;
  for (int i = 0; i < reach && i < line.length; ++i) sum += before[i];
  for (int i = 0; i < line.length; ++i) {
    if (i + reach < line.length) sum += before[i + reach];
    if (i > reach) sum -= before[i - reach - 1];
    line.values[i * line.step] = static_cast<std::uint8_t>((sum + width / 2) / width);
  }
}

// Three boxes in a row come close to a bell curve.
void softBlur(const Line& line, int radius, std::vector<std::uint8_t>& scratch) {
  for (const int part : {radius / 3, (radius + 1) / 3, (radius + 2) / 3})
    if (part > 0) boxBlur(line, part, scratch);
}

}  // namespace

void blur(Coverage& coverage, int radius) {
  std::vector<std::uint8_t> scratch;
  const std::ptrdiff_t width = coverage.width;
  for (int y = 0; y < coverage.height; ++y)
    softBlur({coverage.values.data() + y * width, coverage.width, 1}, radius, scratch);
  for (int x = 0; x < coverage.width; ++x)
    softBlur({coverage.values.data() + x, coverage.height, width}, radius, scratch);
}

}  // namespace orvane::host
