#include "linux/locale/unicode_text.h"

#include <unicode/utf8.h>

#include <cstdint>

namespace orvane::host {
namespace {

struct Step {
  UChar32 character;  // negative where the bytes are ill-formed
  std::int32_t next;
};

// ICU's macro narrows integers in ways that we otherwise warn about.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
Step step(std::string_view text, std::int32_t next, std::int32_t length) {
  UChar32 character = 0;
  U8_NEXT(text.data(), next, length, character);
  return {character, next};
}
#pragma GCC diagnostic pop

}  // namespace

icu::UnicodeString fromUtf8(std::string_view text) {
  constexpr UChar32 kReplacement = 0xFFFD;
  icu::UnicodeString result;
  const auto length = static_cast<std::int32_t>(text.size());
  std::int32_t next = 0;
  while (next < length) {
    const auto [character, after] = step(text, next, length);
    if (character >= 0) {
      result.append(character);
    } else {
      for (auto bad = next; bad < after; ++bad) result.append(kReplacement);
    }
    next = after;
  }
  return result;
}

std::string toUtf8(const icu::UnicodeString& text) {
  std::string result;
  text.toUTF8String(result);
  return result;
}

}  // namespace orvane::host
