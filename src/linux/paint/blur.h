#pragma once

#include <cstdint>
#include <vector>

namespace orvane::host {

// Coverage, one byte a pixel, rows without gaps.
struct Coverage {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> values;
};

// Blurs softly, so that no pixel takes part in what lies farther than `radius` pixels from it in
// either direction. What lies beyond the edges counts as zero.
void blur(Coverage& coverage, int radius);

}  // namespace orvane::host
