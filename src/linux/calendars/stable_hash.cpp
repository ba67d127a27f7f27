#include "linux/calendars/stable_hash.h"

namespace orvane::host {

std::string hexText(std::uint64_t number) {
  std::string text(16, '0');
  for (auto digit = text.rbegin(); digit != text.rend(); ++digit, number >>= 4) {
    *digit = "0123456789abcdef"[number & 0xF];
  }
  return text;
}

}  // namespace orvane::host
