#include "linux/session/bus_address.h"

#include <cctype>

namespace orvane::host {
namespace {

constexpr auto npos = std::string_view::npos;

// Cuts off and answers what stands before the separator.
std::string_view nextPart(std::string_view& text, char separator) {
  const auto end = text.find(separator);
  const auto part = text.substr(0, end);
  text.remove_prefix(end == npos ? text.size() : end + 1);
  return part;
}

std::optional<int> hexadecimalDigit(char digit) {
  const int lower = std::tolower(static_cast<unsigned char>(digit));
  if (lower >= '0' && lower <= '9') return lower - '0';
  if (lower >= 'a' && lower <= 'f') return lower - 'a' + 10;
  return std::nullopt;
}

// Undoes "%2f". Nothing for a text that is cut off within.
std::optional<std::string> unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      plain += text[i];
      continue;
    }
    if (i + 2 >= text.size()) return std::nullopt;
    const auto high = hexadecimalDigit(text[i + 1]);
    const auto low = hexadecimalDigit(text[i + 2]);
    if (!high || !low) return std::nullopt;
    plain += static_cast<char>(*high * 16 + *low);
    i += 2;
  }
  return plain;
}

std::optional<std::string> socketOf(std::string_view address) {
  if (nextPart(address, ':') != "unix") return std::nullopt;
  while (!address.empty()) {
    auto value = nextPart(address, ',');
    const auto key = nextPart(value, '=');
    auto name = unescaped(value);
    if (!name || name->empty()) continue;
    if (key == "path") return name;
    if (key == "abstract") return '\0' + *name;
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> localBusSocket(std::string_view address) {
  while (!address.empty()) {
    if (auto name = socketOf(nextPart(address, ';'))) return name;
  }
  return std::nullopt;
}

}  // namespace orvane::host
