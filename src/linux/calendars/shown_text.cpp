#include "linux/calendars/shown_text.h"

#include <cstdint>

namespace orvane::host {
namespace {

struct Character {
  std::size_t length;  // bytes taken
  bool wellFormed;
};

// Bounds of the second byte per lead byte: Unicode Standard, table 3-7.
bool isSecondByte(unsigned char lead, unsigned char second) {
  switch (lead) {
    case 0xE0:
      return second >= 0xA0 && second <= 0xBF;
    case 0xED:
      return second >= 0x80 && second <= 0x9F;
    case 0xF0:
      return second >= 0x90 && second <= 0xBF;
    case 0xF4:
      return second >= 0x80 && second <= 0x8F;
    default:
      return second >= 0x80 && second <= 0xBF;
  }
}

std::size_t lengthFromLead(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  return 0;
}

Character nextCharacter(std::string_view bytes) {
  const auto at = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const std::size_t length = lengthFromLead(at(0));
  if (length == 0 || length > bytes.size()) return {1, false};
  for (std::size_t i = 1; i < length; ++i) {
    const bool fits = i == 1 ? isSecondByte(at(0), at(1)) : (at(i) & 0xC0) == 0x80;
    if (!fits) return {1, false};
  }
  return {length, true};
}

bool isControl(std::string_view character) {
  const auto first = static_cast<unsigned char>(character[0]);
  if (character.size() == 1) return first < 0x20 || first == 0x7F;
  // U+0080…U+009F, the C1 controls.
  return character.size() == 2 && first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0;
}

std::string trimmedSpaces(const std::string& text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

std::string shownText(std::string_view bytes, std::size_t limit) {
  std::string text;
  std::size_t characters = 0;
  while (!bytes.empty() && characters < limit) {
    const auto [length, wellFormed] = nextCharacter(bytes);
    const auto character = bytes.substr(0, length);
    bytes.remove_prefix(length);
    if (!wellFormed) {
      text += "\xEF\xBF\xBD";
    } else if (isControl(character) || character == " ") {
      if (text.empty()) continue;  // leading space must not use up the limit
      text += ' ';
    } else {
      text += character;
    }
    ++characters;
  }
  return trimmedSpaces(text);
}

}  // namespace orvane::host
