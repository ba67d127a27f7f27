#pragma once

#include <unicode/unistr.h>

#include <string>
#include <string_view>

namespace orvane::host {

// Every byte that is not part of well-formed UTF-8 becomes one U+FFFD.
[[nodiscard]] icu::UnicodeString fromUtf8(std::string_view text);
[[nodiscard]] std::string toUtf8(const icu::UnicodeString& text);

}  // namespace orvane::host
