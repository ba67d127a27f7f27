#include "foundation/utf8.h"

#include <array>
#include <cstddef>

namespace orvane {
namespace {

// By the range of its first byte: how long a character is, and between what its second byte lies
// (RFC 3629, section 4).
struct Pattern {
  unsigned char firstFrom, firstTo;
  std::size_t length;
  unsigned char secondFrom, secondTo;
};

constexpr std::array patterns = {
    Pattern{0x00, 0x7F, 1, 0, 0},       Pattern{0xC2, 0xDF, 2, 0x80, 0xBF},
    Pattern{0xE0, 0xE0, 3, 0xA0, 0xBF}, Pattern{0xE1, 0xEC, 3, 0x80, 0xBF},
    Pattern{0xED, 0xED, 3, 0x80, 0x9F}, Pattern{0xEE, 0xEF, 3, 0x80, 0xBF},
    Pattern{0xF0, 0xF0, 4, 0x90, 0xBF}, Pattern{0xF1, 0xF3, 4, 0x80, 0xBF},
    Pattern{0xF4, 0xF4, 4, 0x80, 0x8F}};

unsigned char byteAt(std::string_view bytes, std::size_t index) {
  return static_cast<unsigned char>(bytes[index]);
}

bool matches(std::string_view bytes, const Pattern& pattern) {
  const unsigned char first = byteAt(bytes, 0);
  if (first < pattern.firstFrom || first > pattern.firstTo || bytes.size() < pattern.length)
    return false;
  if (pattern.length == 1) return true;
  const unsigned char second = byteAt(bytes, 1);
  if (second < pattern.secondFrom || second > pattern.secondTo) return false;
  for (std::size_t index = 2; index < pattern.length; ++index) {
    if ((byteAt(bytes, index) & 0xC0) != 0x80) return false;
  }
  return true;
}

// Of the character at the beginning; 0 when there is none.
std::size_t lengthOfFirst(std::string_view bytes) {
  for (const auto& pattern : patterns) {
    if (matches(bytes, pattern)) return pattern.length;
  }
  return 0;
}

}  // namespace

bool isWellFormedUTF8(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t length = lengthOfFirst(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

}  // namespace orvane
