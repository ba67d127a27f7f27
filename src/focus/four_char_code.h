#pragma once

#include <cstdint>
#include <string_view>

namespace orvane {

// The text's UTF-8 bytes folded into one number, the first byte highest. Of a text of more than
// four bytes the last four count.
[[nodiscard]] constexpr std::uint32_t fourCharCode(std::string_view text) {
  std::uint32_t code = 0;
  for (const char byte : text) code = (code << 8U) + static_cast<unsigned char>(byte);
  return code;
}

}  // namespace orvane
