#include "picture_comparison.h"

#include <algorithm>
#include <cstdlib>

namespace orvane::testing_pictures {

namespace {

int channel(std::uint32_t pixel, int shift) { return static_cast<int>(pixel >> shift & 0xFF); }

int distance(std::uint32_t a, std::uint32_t b) {
  int largest = 0;
  for (const int shift : {0, 8, 16, 24})
    largest = std::max(largest, std::abs(channel(a, shift) - channel(b, shift)));
  return largest;
}

std::uint32_t faded(std::uint32_t pixel) {
  const int grey = (channel(pixel, 0) + channel(pixel, 8) + channel(pixel, 16)) / 12;
  return 0xFF000000U | static_cast<std::uint32_t>(grey * 0x010101);
}

}  // namespace

Comparison compare(const host::Picture& expected, const host::Picture& actual,
                   const Tolerance& tolerance) {
  Comparison result;
  if (expected.width != actual.width || expected.height != actual.height) return result;
  result.difference = host::Picture(actual.width, actual.height);
  for (std::size_t i = 0; i < actual.pixels.size(); ++i) {
    const int apart = distance(expected.pixels[i], actual.pixels[i]);
    const bool differs = apart > tolerance.perChannel;
    result.largest = std::max(result.largest, apart);
    result.differences += differs ? 1 : 0;
    result.difference.pixels[i] = differs ? 0xFFFF0000U : faded(actual.pixels[i]);
  }
  result.matches = result.differences <= tolerance.mostDifferences;
  return result;
}

}  // namespace orvane::testing_pictures
