#include "linux/paint/plain_text.h"

#include <cstdint>

namespace orvane::host {

namespace {

struct LeadByte {
  std::size_t length = 0;  // of the whole sequence; 0: no sequence begins like this
  std::uint8_t secondMin = 0x80;
  std::uint8_t secondMax = 0xBF;
};

// Unicode, table 3-7: which bytes may follow which.
LeadByte leadByte(std::uint8_t byte) {
  if (byte < 0x80) return {1};
  if (byte < 0xC2) return {};
  if (byte < 0xE0) return {2};
  if (byte == 0xE0) return {3, 0xA0, 0xBF};
  if (byte == 0xED) return {3, 0x80, 0x9F};
  if (byte < 0xF0) return {3};
  if (byte == 0xF0) return {4, 0x90, 0xBF};
  if (byte < 0xF4) return {4};
  if (byte == 0xF4) return {4, 0x80, 0x8F};
  return {};
}

std::uint8_t byteAt(std::string_view text, std::size_t index) {
  return static_cast<std::uint8_t>(text[index]);
}

// How many bytes at the front belong together: a character, or the longest beginning of one that
// is broken off, which counts as one fault.
struct Sequence {
  std::size_t length = 1;
  bool wellFormed = false;
};

Sequence firstSequence(std::string_view text) {
  const LeadByte lead = leadByte(byteAt(text, 0));
  if (lead.length == 0) return {};
  std::size_t length = 1;
  for (; length < lead.length && length < text.size(); ++length) {
    const std::uint8_t byte = byteAt(text, length);
    const std::uint8_t least = length == 1 ? lead.secondMin : 0x80;
    const std::uint8_t most = length == 1 ? lead.secondMax : 0xBF;
    if (byte < least || byte > most) break;
  }
  return {length, length == lead.length};
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
    const Sequence sequence = firstSequence(text);
    const std::string_view character = text.substr(0, sequence.length);
    if (!sequence.wellFormed)
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
  const std::string_view character = text.substr(0, firstSequence(text).length);
  text.remove_prefix(character.size());
  return character;
}

}  // namespace orvane::host
