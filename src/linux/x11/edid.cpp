#include "linux/x11/edid.h"

#include <array>
#include <cstdio>

namespace orvane::host::x11 {

namespace {

constexpr std::size_t blockSize = 128;
constexpr std::string_view header("\x00\xff\xff\xff\xff\xff\xff\x00", 8);

unsigned byteAt(std::string_view block, std::size_t offset) {
  return static_cast<unsigned char>(block[offset]);
}

// Three letters of five bits each, 1 being A.
std::string manufacturer(std::string_view block) {
  const unsigned packed = byteAt(block, 8) << 8U | byteAt(block, 9);
  std::string letters;
  for (const unsigned shift : {10U, 5U, 0U}) {
    letters += static_cast<char>('A' - 1 + (packed >> shift & 0x1fU));
  }
  return letters;
}

std::string productCode(std::string_view block) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "0x%04X", byteAt(block, 10) | byteAt(block, 11) << 8U);
  return text.data();
}

// One of the four 18-byte descriptors, when it is the one with the product's name: padded with a
// line feed and blanks.
std::string productName(std::string_view descriptor) {
  constexpr std::string_view nameTag("\x00\x00\x00\xfc\x00", 5);
  if (!descriptor.starts_with(nameTag)) return {};
  auto name = descriptor.substr(nameTag.size());
  name = name.substr(0, name.find('\n'));
  const auto last = name.find_last_not_of(std::string_view(" \0", 2));
  return last == std::string_view::npos ? std::string() : std::string(name.substr(0, last + 1));
}

}  // namespace

MonitorModel modelFromEdid(std::string_view block) {
  if (block.size() < blockSize || !block.starts_with(header)) return {};
  MonitorModel found{manufacturer(block), productCode(block)};
  for (const std::size_t offset : {54U, 72U, 90U, 108U}) {
    const auto name = productName(block.substr(offset, 18));
    if (!name.empty()) found.model = name;
  }
  return found;
}

}  // namespace orvane::host::x11
