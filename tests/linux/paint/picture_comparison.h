#pragma once

#include "linux/paint/png.h"

namespace orvane::testing_pictures {

struct Tolerance {
  int perChannel = 0;       // a difference up to this does not count
  int mostDifferences = 0;  // pixels that may differ by more
};

struct Comparison {
  bool matches = false;
  int differences = 0;  // pixels that differ by more than the tolerance
  int largest = 0;      // difference in any channel of any pixel
  // Grey where the two agree, red where they do not. Empty when the sizes differ.
  host::Picture difference;
};

[[nodiscard]] Comparison compare(const host::Picture& expected, const host::Picture& actual,
                                 const Tolerance& tolerance = {});

}  // namespace orvane::testing_pictures
