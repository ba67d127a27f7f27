#include "linux/reader/plain_text.h"

#include "linux/reader/item_reading.h"

namespace orvane::ical {

std::optional<std::string> plainText(std::string_view value, TextEncoding encoding) {
  // No code point takes more than four bytes, nor more than two signs.
  const std::string escaped = decodedText(value.substr(0, 8 * kLongestTitle), encoding);
  std::string text;
  for (std::size_t at = 0; at < escaped.size(); ++at) {
    if (escaped[at] != '\\' || at + 1 == escaped.size()) {
      text.push_back(escaped[at]);
      continue;
    }
    ++at;
    text.push_back(escaped[at] == 'n' || escaped[at] == 'N' ? '\n' : escaped[at]);
  }
  if (text.find_first_not_of(" \t\n\r") == std::string::npos) return std::nullopt;
  return firstCodePoints(std::move(text), kLongestTitle);
}

}  // namespace orvane::ical
