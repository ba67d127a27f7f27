#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "linux/reader/text_encoding.h"

namespace orvane::ical {

// A TEXT value (RFC 5545 section 3.3.11) as people read it, cut to the length of a title; nothing
// when there is nothing to read.
std::optional<std::string> plainText(std::string_view value, TextEncoding encoding);

}  // namespace orvane::ical
