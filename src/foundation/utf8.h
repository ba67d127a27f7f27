#pragma once

#include <concepts>
#include <cstddef>
#include <string_view>

namespace orvane {

// The bytes at the front of a text that belong together: a character, or what makes one fault,
// which is the longest beginning of a character that is broken off, or else a single byte.
struct UTF8Sequence {
  std::size_t length = 1;
  bool isWellFormed = false;

  friend bool operator==(const UTF8Sequence&, const UTF8Sequence&) = default;
};

// By RFC 3629, section 4. `byteAt` answers the byte at an index, or -1 behind the last; there must
// be a first one.
template <std::invocable<std::size_t> ByteAt>
[[nodiscard]] constexpr UTF8Sequence firstUTF8Sequence(const ByteAt& byteAt) {
  const int first = byteAt(0);
  if (first < 0x80) return {1, true};
  if (first < 0xC2 || first > 0xF4) return {};
  const std::size_t whole = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  // Overlong forms, surrogates and numbers beyond U+10FFFF are told by the second byte.
  const int lowest = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
  const int highest = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
  const int second = byteAt(1);
  if (second < lowest || second > highest) return {};
  std::size_t length = 2;
  while (length < whole && byteAt(length) >= 0x80 && byteAt(length) <= 0xBF) ++length;
  return {length, length == whole};
}

// Of a text that is not empty.
[[nodiscard]] constexpr UTF8Sequence firstUTF8Sequence(std::string_view text) {
  return firstUTF8Sequence([text](std::size_t index) {
    return index < text.size() ? static_cast<unsigned char>(text[index]) : -1;
  });
}

// Whether the bytes are characters throughout.
[[nodiscard]] constexpr bool isWellFormedUTF8(std::string_view bytes) {
  while (!bytes.empty()) {
    const UTF8Sequence sequence = firstUTF8Sequence(bytes);
    if (!sequence.isWellFormed) return false;
    bytes.remove_prefix(sequence.length);
  }
  return true;
}

}  // namespace orvane
