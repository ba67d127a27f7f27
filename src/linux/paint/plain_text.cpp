#include "linux/paint/plain_text.h"

#include <cstdint>

#include "foundation/utf8.h"

namespace orvane::host {

namespace {

std::uint8_t byteAt(std::string_view text, std::size_t index) {
  return static_cast<std::uint8_t>(text[index]);
}

bool isBreakOrControl(std::string_view character) {
  const std::uint8_t first = byteAt(character, 0);
  if (character.size() == 1) return first < 0x20 || first == 0x7F;
  if (character.size() == 2) return first == 0xC2 && byteAt(character, 1) < 0xA0;
  return character == "\u2028" || character == "\u2029";
}

}  // namespace

std::string plainText(std::string_view text) {
  std::string plain;
  plain.reserve(text.size() < 4 * longestShapedText ? text.size() : 4 * longestShapedText);
  for (std::size_t characters = 0; !text.empty(); ++characters) {
    if (characters == longestShapedText) return plain + "\u2026";
    const UTF8Sequence sequence = firstUTF8Sequence(text);
    const std::string_view character = text.substr(0, sequence.length);
    if (!sequence.isWellFormed)
      plain += "\uFFFD";
    else if (isBreakOrControl(character))
      plain += ' ';
    else
      plain += character;
    text.remove_prefix(sequence.length);
  }
  return plain;
}

std::string_view takeCharacter(std::string_view& text) {
  const std::string_view character = text.substr(0, firstUTF8Sequence(text).length);
  text.remove_prefix(character.size());
  return character;
}

}  // namespace orvane::host
