#pragma once

#include <string_view>

namespace orvane {

// Whether the bytes are UTF-8 as RFC 3629 defines it: no overlong forms, surrogates or numbers
// beyond U+10FFFF.
[[nodiscard]] bool isWellFormedUTF8(std::string_view bytes);

}  // namespace orvane
