#pragma once

#include "foundation/color.h"

namespace orvane::window {

// How far apart two colours are in lightness, from 1 to 21 (WCAG 2.1, "contrast ratio").
[[nodiscard]] double contrast(const SRGB& a, const SRGB& b);

// The colour itself, or as much lighter or darker as it takes to be told from the background.
[[nodiscard]] SRGB visibleOn(const SRGB& color, const SRGB& background);

// White, or black where white could not be read.
[[nodiscard]] SRGB textOn(const SRGB& color);

}  // namespace orvane::window
