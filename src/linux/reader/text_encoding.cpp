#include "linux/reader/text_encoding.h"

#include <array>
#include <utility>

#include "foundation/utf8.h"

namespace orvane::ical {

namespace {

constexpr char32_t kReplacement = 0xfffd;

// What Windows-1252 has in place of the control characters 0x80…0x9f.
constexpr std::array<char16_t, 32> kWindowsLetters = {
    0x20ac, 0xfffd, 0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
    0x2039, 0x0152, 0xfffd, 0x017d, 0xfffd, 0xfffd, 0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0xfffd, 0x017e, 0x0178};

void appendCodePoint(std::string& text, char32_t code) {
  const auto append = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
  if (code < 0x80) {
    append(code);
  } else if (code < 0x800) {
    append(0xc0 | (code >> 6));
    append(0x80 | (code & 0x3f));
  } else if (code < 0x10000) {
    append(0xe0 | (code >> 12));
    append(0x80 | ((code >> 6) & 0x3f));
    append(0x80 | (code & 0x3f));
  } else {
    append(0xf0 | (code >> 18));
    append(0x80 | ((code >> 12) & 0x3f));
    append(0x80 | ((code >> 6) & 0x3f));
    append(0x80 | (code & 0x3f));
  }
}

std::string fromUtf16(std::string_view bytes, bool isBigEndian) {
  const auto unitAt = [&](std::size_t at) {
    const auto first = static_cast<unsigned char>(bytes[at]);
    const auto second = static_cast<unsigned char>(bytes[at + 1]);
    return static_cast<char32_t>(isBigEndian ? first << 8 | second : second << 8 | first);
  };
  std::string text;
  text.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    char32_t code = unitAt(at);
    if (code >= 0xd800 && code < 0xdc00 && at + 3 < bytes.size()) {
      const char32_t low = unitAt(at + 2);
      if (low >= 0xdc00 && low < 0xe000) {
        code = 0x10000 + ((code - 0xd800) << 10) + (low - 0xdc00);
        at += 2;
      }
    }
    appendCodePoint(text, code >= 0xd800 && code < 0xe000 ? kReplacement : code);
  }
  return text;
}

// The bytes of a text as if it had no folds; only ever a few from where it stands.
class UnfoldingCursor {
 public:
  explicit UnfoldingCursor(std::string_view text) : text_(text) {}

  int operator()(std::size_t ahead) const {
    std::size_t at = position_;
    for (; ahead > 0; --ahead) at = skipFold(at + 1);
    return at < text_.size() ? static_cast<unsigned char>(text_[at]) : -1;
  }
  void advance(std::size_t count) {
    for (; count > 0; --count) position_ = skipFold(position_ + 1);
  }
  // Passes what is plain ASCII quickly; false at the end.
  bool moveToForeignByte() {
    while (position_ < text_.size() && static_cast<signed char>(text_[position_]) >= 0) ++position_;
    return position_ < text_.size();
  }

 private:
  [[nodiscard]] std::size_t skipFold(std::size_t at) const {
    std::size_t behind = at;
    if (behind < text_.size() && text_[behind] == '\r') ++behind;
    if (behind < text_.size() && text_[behind] == '\n') ++behind;
    const bool isFold =
        behind > at && behind < text_.size() && (text_[behind] == ' ' || text_[behind] == '\t');
    return isFold ? behind + 1 : at;
  }

  std::string_view text_;
  std::size_t position_ = 0;
};

constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";

// Whether the text begins with a few ASCII letters of two bytes each, as every calendar does.
bool beginsAsUtf16(std::string_view bytes, bool isBigEndian) {
  constexpr std::size_t units = 4;
  if (bytes.size() < 2 * units) return false;
  for (std::size_t at = 0; at < 2 * units; at += 2) {
    const char letter = bytes[isBigEndian ? at + 1 : at], other = bytes[isBigEndian ? at : at + 1];
    if (letter <= 0 || other != 0) return false;
  }
  return true;
}

// Files that were joined have the mark of each at its first line.
std::string withoutByteOrderMarks(std::string bytes) {
  constexpr std::string_view atLine = "\n\xef\xbb\xbf";
  if (bytes.starts_with(kByteOrderMark)) bytes.erase(0, kByteOrderMark.size());
  std::size_t mark = bytes.find(atLine);
  if (mark == std::string::npos) return bytes;
  std::string text;
  text.reserve(bytes.size());
  std::size_t begin = 0;
  for (; mark != std::string::npos; mark = bytes.find(atLine, begin)) {
    text.append(bytes, begin, mark + 1 - begin);
    begin = mark + atLine.size();
  }
  return text.append(bytes, begin);
}

}  // namespace

std::string asByteText(std::string bytes) {
  const std::string_view view = bytes;
  if (view.starts_with("\xff\xfe")) return fromUtf16(view.substr(2), false);
  if (view.starts_with("\xfe\xff")) return fromUtf16(view.substr(2), true);
  if (beginsAsUtf16(view, false)) return fromUtf16(view, false);
  if (beginsAsUtf16(view, true)) return fromUtf16(view, true);
  return withoutByteOrderMarks(std::move(bytes));
}

TextEncoding encodingOf(std::string_view text) {
  bool hasBadBytes = false;
  UnfoldingCursor cursor(text);
  while (cursor.moveToForeignByte()) {
    if (firstUTF8Sequence(cursor).isWellFormed) return TextEncoding::utf8;
    hasBadBytes = true;
    cursor.advance(1);
  }
  return hasBadBytes ? TextEncoding::latin1 : TextEncoding::utf8;
}

std::string decodedText(std::string_view bytes, TextEncoding encoding) {
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const auto byte = static_cast<unsigned char>(bytes.front());
    const UTF8Sequence sequence = firstUTF8Sequence(bytes);
    const bool isCharacter =
        sequence.isWellFormed && (encoding == TextEncoding::utf8 || byte < 0x80);
    if (byte == 0) {
      text.push_back(' ');
    } else if (isCharacter) {
      text.append(bytes.substr(0, sequence.length));
    } else if (encoding == TextEncoding::utf8) {
      appendCodePoint(text, kReplacement);
    } else {
      appendCodePoint(text, byte < 0xa0 ? kWindowsLetters[byte - 0x80] : byte);
    }
    bytes.remove_prefix(isCharacter ? sequence.length : 1);
  }
  return text;
}

std::string firstCodePoints(std::string text, std::size_t most) {
  if (text.size() <= most) return text;
  std::size_t points = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool startsPoint = (static_cast<unsigned char>(text[at]) & 0xc0) != 0x80;
    if (startsPoint && ++points > most) {
      text.resize(at);
      break;
    }
  }
  return text;
}

}  // namespace orvane::ical
