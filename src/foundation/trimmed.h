#pragma once

#include <string_view>

namespace orvane {

// `text`, which is UTF-8, without the white space and line breaks (Unicode's White_Space) at its
// two ends. A view into `text`.
[[nodiscard]] std::string_view trimmed(std::string_view text);

}  // namespace orvane
