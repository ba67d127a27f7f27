#include "foundation/trimmed.h"

#include <array>

namespace orvane {
namespace {

// White space beyond ASCII, as UTF-8.
constexpr std::array<std::string_view, 19> wideSpaces = {
    "\u0085", "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003",
    "\u2004", "\u2005", "\u2006", "\u2007", "\u2008", "\u2009", "\u200A",
    "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"};

bool isAsciiSpace(char byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }

// How many bytes of white space stand at the front, of one character; 0 when there are none.
std::size_t spaceAtFront(std::string_view text) {
  if (!text.empty() && isAsciiSpace(text.front())) return 1;
  for (const auto space : wideSpaces) {
    if (text.starts_with(space)) return space.size();
  }
  return 0;
}

std::size_t spaceAtBack(std::string_view text) {
  if (!text.empty() && isAsciiSpace(text.back())) return 1;
  for (const auto space : wideSpaces) {
    if (text.ends_with(space)) return space.size();
  }
  return 0;
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  while (const std::size_t bytes = spaceAtFront(text)) text.remove_prefix(bytes);
  while (const std::size_t bytes = spaceAtBack(text)) text.remove_suffix(bytes);
  return text;
}

}  // namespace orvane
