#pragma once

#include <bit>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::wire {

// Puts values one behind the other as bytes: numbers little-endian and of fixed width, texts and
// lists behind their count, optional values behind a byte that is 0 or 1.
class ByteWriter {
 public:
  void writeByte(std::uint8_t value) { bytes_.push_back(static_cast<char>(value)); }
  void writeBool(bool value) { writeByte(value ? 1 : 0); }
  void write32(std::uint32_t value) { writeLittleEndian(value, 4); }
  void write64(std::uint64_t value) { writeLittleEndian(value, 8); }
  void writeDouble(double value) { write64(std::bit_cast<std::uint64_t>(value)); }
  void writeText(std::string_view text) {
    write32(static_cast<std::uint32_t>(text.size()));
    bytes_.append(text);
  }

  template <class T, class WriteOne>
  void writeOptional(const std::optional<T>& value, WriteOne writeOne) {
    writeBool(value.has_value());
    if (value) writeOne(*value);
  }

  template <class T, class WriteOne>
  void writeList(const std::vector<T>& values, WriteOne writeOne) {
    write32(static_cast<std::uint32_t>(values.size()));
    for (const T& value : values) writeOne(value);
  }

  [[nodiscard]] const std::string& bytes() const { return bytes_; }
  // What was written, framed: a tag that tells the kinds of message apart, the length, the bytes.
  [[nodiscard]] std::string framed(std::uint32_t tag) const {
    ByteWriter frame;
    frame.write32(tag);
    frame.write32(static_cast<std::uint32_t>(bytes_.size()));
    return frame.bytes_ + bytes_;
  }

 private:
  void writeLittleEndian(std::uint64_t value, int width) {
    for (int index = 0; index < width; ++index) {
      bytes_.push_back(static_cast<char>((value >> (8 * index)) & 0xff));
    }
  }

  std::string bytes_;
};

}  // namespace orvane::wire
