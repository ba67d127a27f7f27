#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane::host {

// Foreign bytes as one line of text that may be shown: ill-formed UTF-8 becomes U+FFFD, control
// characters become spaces, white space at both ends goes, and what is beyond `limit` characters
// is cut off. May come out empty.
std::string shownText(std::string_view bytes, std::size_t limit = 200);

}  // namespace orvane::host
