#pragma once

#include <string_view>

namespace orvane::host::x11 {

// Pixels per point, from the text of the RESOURCE_MANAGER property: its `Xft.dpi` over 96, within
// 0.5…4. Where several lines name it the last counts; without a readable one the scale is 1.
double displayScale(std::string_view resources);

}  // namespace orvane::host::x11
