#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane::ical {

// In which way the bytes of a file are letters. UTF-16 never gets so far, see asByteText().
enum class TextEncoding {
  utf8,    // with bytes that are none replaced by U+FFFD
  latin1,  // in the variant of Windows, which most files mean by it
};

// The file without byte order marks, and as bytes that contain ASCII when it is UTF-16, with a
// mark or without.
std::string asByteText(std::string bytes);

// A file with bad bytes in it and not one good character beyond ASCII is old Latin text; folds
// within a character do not count as bad.
TextEncoding encodingOf(std::string_view text);

// Always well-formed and without zero bytes.
std::string decodedText(std::string_view bytes, TextEncoding encoding);

// The first code points of well-formed text.
std::string firstCodePoints(std::string text, std::size_t most);

}  // namespace orvane::ical
