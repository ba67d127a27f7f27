#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "view/painter.h"

namespace orvane::host::statusitem {

// A square picture: 32 bits a pixel, in the order alpha, red, green, blue, not premultiplied, as
// the IconPixmap of a status item has it.
struct IconPixels {
  int side = 0;
  std::vector<std::uint8_t> argb;

  friend bool operator==(const IconPixels&, const IconPixels&) = default;
};

// Whether there is a drawing of this name.
[[nodiscard]] bool hasSymbol(const std::string& name);

// The symbol, centred, in the sizes that panels use, for hosts that find no themed icon. Light with
// a dark edge, so that it can be seen on panels of either kind.
[[nodiscard]] std::vector<IconPixels> symbolPixels(const std::string& name, Painter& painter);

}  // namespace orvane::host::statusitem
