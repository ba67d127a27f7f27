#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane::host {

// No text that is shown needs more; shaping costs more than linear time in the length.
inline constexpr std::size_t longestShapedText = 2000;  // characters

// The text as it is set: well-formed UTF-8 in which ill-formed bytes have become U+FFFD, and line
// breaks and control characters spaces. Cut, with an ellipsis, after `longestShapedText`.
[[nodiscard]] std::string plainText(std::string_view text);

// Takes the first character off well-formed, not empty UTF-8.
[[nodiscard]] std::string_view takeCharacter(std::string_view& text);

}  // namespace orvane::host
