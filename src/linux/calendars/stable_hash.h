#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace orvane::host {

// FNV-1a over 64 bits: the same for the same bytes in every run, so that it may be stored.
class StableHash {
 public:
  StableHash& add(std::string_view bytes) {
    for (const char byte : bytes) addByte(static_cast<unsigned char>(byte));
    return *this;
  }
  template <class Integer>
  requires std::is_integral_v<Integer> StableHash& add(Integer number) {
    auto rest = static_cast<std::uint64_t>(number);
    for (int i = 0; i < 8; ++i, rest >>= 8) addByte(static_cast<unsigned char>(rest & 0xFF));
    return *this;
  }
  [[nodiscard]] std::uint64_t value() const { return value_; }

 private:
  void addByte(unsigned char byte) { value_ = (value_ ^ byte) * 0x100000001b3ULL; }
  std::uint64_t value_ = 0xcbf29ce484222325ULL;
};

inline std::uint64_t stableHash(std::string_view bytes) { return StableHash().add(bytes).value(); }

// Sixteen hexadecimal digits.
std::string hexText(std::uint64_t number);

}  // namespace orvane::host
