#pragma once

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string_view>

namespace orvane {

// The number of the display of that make and model on that connector, of which the latter two may
// be empty: positive, of 31 bits, and the same in every run and on every kind of desktop, since
// settings refer to it. Nothing without a connector, by which alone twins can be told apart.
[[nodiscard]] constexpr std::optional<std::int64_t> screenNumberOf(std::string_view connector,
                                                                   std::string_view make,
                                                                   std::string_view model) {
  if (connector.empty()) return std::nullopt;
  // FNV-1a, 32 bits: offset basis and prime as published by its authors.
  std::uint32_t hash = 2166136261U;
  const auto add = [&hash](char byte) {
    hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619U;
  };
  for (const auto text : {connector, make, model}) {
    for (const char byte : text) add(byte);
    add('\0');  // so that no two lists of texts run into each other
  }
  return std::max<std::int64_t>(hash & 0x7fffffffU, 1);
}

}  // namespace orvane
