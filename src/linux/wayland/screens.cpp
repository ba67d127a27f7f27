#include "linux/wayland/screens.h"

#include <algorithm>
#include <utility>

namespace orvane::host::wayland {
namespace {

// FNV-1a, 32 bits: offset basis and prime as published by its authors.
class Hash {
 public:
  void add(const std::string& text) {
    for (const char c : text) addByte(static_cast<unsigned char>(c));
    addByte(0);  // so that no two lists of texts run into each other
  }
  [[nodiscard]] std::uint32_t value() const { return value_; }

 private:
  void addByte(unsigned char byte) { value_ = (value_ ^ byte) * 16777619U; }
  std::uint32_t value_ = 2166136261U;
};

}  // namespace

std::optional<std::int64_t> screenNumber(const OutputDescription& output) {
  if (output.connector.empty()) return std::nullopt;
  Hash hash;
  hash.add(output.connector);
  hash.add(output.make);
  hash.add(output.model);
  return std::max<std::int64_t>(hash.value() & 0x7fffffffU, 1);
}

NSScreen screenOf(const OutputDescription& output, const std::string& identity) {
  return {output.frame, output.frame, screenNumber(output), identity};
}

std::optional<std::size_t> mainOutput(const std::vector<OutputDescription>& outputs) {
  if (outputs.empty()) return std::nullopt;
  const auto rank = [](const OutputDescription& output) {
    const auto& frame = output.frame;
    return std::pair(frame.x * frame.x + frame.y * frame.y, output.connector);
  };
  const auto nearest =
      std::min_element(outputs.begin(), outputs.end(),
                       [&](const auto& a, const auto& b) { return rank(a) < rank(b); });
  return static_cast<std::size_t>(nearest - outputs.begin());
}

}  // namespace orvane::host::wayland
