#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "foundation/color.h"

namespace orvane {

// The opaque colour that "#RRGGBB" or "RRGGBB" denotes, white space around it not counting. The six
// characters are one number in base 16, of which the first may be a sign; a negative one stands for
// the bits of its two's complement. Nothing for any other text.
[[nodiscard]] std::optional<Color> colorFromHex(std::string_view text);

// "#RRGGBB", each component rounded to the nearest of 256 steps, halves away from zero; the opacity
// is not written. Nothing when a component is no number that can be written so.
[[nodiscard]] std::optional<std::string> hexFromColor(const Color& color);

}  // namespace orvane
