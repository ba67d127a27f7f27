#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::wire {

// Takes back what a ByteWriter wrote. The bytes may be anything: what does not fit makes the reader
// fail, and from then on it yields zeros and empty values, so that callers ask only once at the
// end. It never asks for more memory than a small multiple of the bytes it was given.
class ByteReader {
 public:
  explicit ByteReader(std::string_view bytes) : rest_(bytes) {}

  // Everything was understood, and nothing is left over.
  [[nodiscard]] bool isComplete() const { return !failed_ && rest_.empty(); }

  std::uint8_t readByte() { return static_cast<std::uint8_t>(readLittleEndian(1)); }
  std::uint32_t read32() { return static_cast<std::uint32_t>(readLittleEndian(4)); }
  std::uint64_t read64() { return readLittleEndian(8); }

  bool readBool() {
    const std::uint8_t value = readByte();
    if (value > 1) fail();
    return value == 1;
  }

  // Instants are numbers; neither infinities nor their absence are ever sent.
  double readFinite() {
    const double value = std::bit_cast<double>(read64());
    if (std::isfinite(value)) return value;
    fail();
    return 0;
  }

  std::string readText() {
    const std::uint32_t size = read32();
    if (size > rest_.size()) fail();
    if (failed_) return {};
    std::string text(rest_.substr(0, size));
    rest_.remove_prefix(size);
    return text;
  }

  template <class ReadOne>
  auto readOptional(ReadOne readOne) -> std::optional<decltype(readOne())> {
    if (!readBool() || failed_) return std::nullopt;
    return readOne();
  }

  // `smallest` is the least number of bytes that one element can take: a count that the remaining
  // bytes cannot hold is refused before anything is reserved for it.
  template <class ReadOne>
  auto readList(std::size_t smallest, ReadOne readOne) -> std::vector<decltype(readOne())> {
    std::vector<decltype(readOne())> values;
    const std::size_t count = read32();
    if (count > rest_.size() / smallest) fail();
    if (failed_) return values;
    values.reserve(count);
    while (values.size() < count && !failed_) values.push_back(readOne());
    return values;
  }

  void fail() {
    failed_ = true;
    rest_ = {};
  }

 private:
  std::uint64_t readLittleEndian(std::size_t width) {
    if (rest_.size() < width) fail();
    if (failed_) return 0;
    std::uint64_t value = 0;
    for (std::size_t index = 0; index < width; ++index) {
      value |= std::uint64_t{static_cast<unsigned char>(rest_[index])} << (8 * index);
    }
    rest_.remove_prefix(width);
    return value;
  }

  std::string_view rest_;
  bool failed_ = false;
};

}  // namespace orvane::wire
